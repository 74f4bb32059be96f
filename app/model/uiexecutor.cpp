#include "app/model/uiexecutor.hpp"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace Corvane {

using Wendril::Duration;
using Wendril::TimePoint;
using Wendril::UniqueFunction;

namespace {

TimePoint clockTime() { return std::chrono::steady_clock::now(); }

}  // namespace

// The work that waits, by due time; entries due together keep their order. Suspended tasks wait here,
// and each owns its executor. The agenda therefore cannot end with the executor alone: the receiver,
// a child of the application, ends it at the latest.
class UiExecutor::Agenda {
public:
    explicit Agenda(QObject* receiver)
        : receiver(receiver) {}

    void add(TimePoint due, UniqueFunction work) {
        const std::scoped_lock lock(mutex);
        if (!receiver) return;
        const auto added = entries.emplace(due, std::move(work));
        if (added == entries.begin()) wake();
    }

    // Call it when the event has arrived; work that is added from now on sends another. Returns the
    // time.
    TimePoint eventArrived() {
        const std::scoped_lock lock(mutex);
        eventSent = false;
        return clockTime();
    }

    // Takes the next entry that is due by `limit`; empty when there is none. The entry may run an
    // event loop of its own, so that an event is sent for the entries after it.
    UniqueFunction take(TimePoint limit) {
        const std::scoped_lock lock(mutex);
        if (entries.empty() || entries.begin()->first > limit) return {};
        auto next = entries.extract(entries.begin());
        if (!entries.empty()) wake();
        return std::move(next.mapped());
    }

    // Time until the next entry is due; absent when there is none.
    std::optional<Duration> pause() {
        const std::scoped_lock lock(mutex);
        if (entries.empty()) return std::nullopt;
        const Duration left = entries.begin()->first - clockTime();
        if (left <= Duration::zero()) wake();
        return left;
    }

    // Drops all work. Its destruction may post more, which is dropped at once.
    void end() {
        std::multimap<TimePoint, UniqueFunction> dropped;
        const std::scoped_lock lock(mutex);
        receiver = nullptr;
        std::swap(dropped, entries);
    }

    void deleteReceiver() {
        const std::scoped_lock lock(mutex);
        if (receiver) receiver->deleteLater();
    }

private:
    // Sends the receiver an event. Call it under the lock: the receiver cannot end meanwhile.
    void wake() {
        if (!std::exchange(eventSent, true)) QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
    }

    std::mutex mutex;
    QObject* receiver;  // null once it has ended
    std::multimap<TimePoint, UniqueFunction> entries;
    bool eventSent = false;  // and not yet arrived
};

class UiExecutor::Receiver final : public QObject {
public:
    explicit Receiver(QObject* parent)
        : QObject(parent)
        , agenda(std::make_shared<Agenda>(this)) {}
    ~Receiver() override { agenda->end(); }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;

    const std::shared_ptr<Agenda> agenda;

protected:
    void customEvent(QEvent*) override { runDue(); }
    void timerEvent(QTimerEvent*) override { runDue(); }

private:
    // Runs what is due now. Work that is posted meanwhile waits for the next event, so that the user's
    // input is handled before it.
    void runDue() {
        constexpr Duration longestWait = std::chrono::hours(1);
        for (const TimePoint limit = agenda->eventArrived(); UniqueFunction work = agenda->take(limit);)
            work();
        const auto pause = agenda->pause();
        if (!pause || *pause <= Duration::zero()) return timer.stop();
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(std::min(*pause, longestWait));
        timer.start(static_cast<int>(wait.count()), Qt::PreciseTimer, this);
    }

    QBasicTimer timer;
};

UiExecutor::UiExecutor()
    : thread(std::this_thread::get_id())
    , agenda((new Receiver(QCoreApplication::instance()))->agenda) {}

UiExecutor::~UiExecutor() {
    agenda->deleteReceiver();
    agenda->end();
}

void UiExecutor::post(UniqueFunction work) { agenda->add(clockTime(), std::move(work)); }

void UiExecutor::postAfter(Duration delay, UniqueFunction work) {
    agenda->add(clockTime() + std::max(delay, Duration::zero()), std::move(work));
}

bool UiExecutor::isCurrent() const { return std::this_thread::get_id() == thread; }

TimePoint UiExecutor::now() const { return clockTime(); }

}  // namespace Corvane
