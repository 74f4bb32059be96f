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

// What is to be done, by due time; entries due together keep their order. Suspended tasks wait here
// and own their executor, so it is the receiver, a child of the application, that ends the agenda.
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

    // The event has come: another is sent when there is more to do.
    TimePoint answer() {
        const std::scoped_lock lock(mutex);
        awake = false;
        return clockTime();
    }

    // None when nothing is due by then. The work may run an event loop of its own, which sees to the
    // rest.
    UniqueFunction take(TimePoint limit) {
        const std::scoped_lock lock(mutex);
        if (entries.empty() || entries.begin()->first > limit) return {};
        auto next = entries.extract(entries.begin());
        if (!entries.empty()) wake();
        return std::move(next.mapped());
    }

    // The time until there is something to do; none when nothing is left.
    std::optional<Duration> pause() {
        const std::scoped_lock lock(mutex);
        if (entries.empty()) return std::nullopt;
        const Duration left = entries.begin()->first - clockTime();
        if (left <= Duration::zero()) wake();
        return left;
    }

    // Dropped work may post more, which is dropped at once.
    void end() {
        std::multimap<TimePoint, UniqueFunction> dropped;
        const std::scoped_lock lock(mutex);
        receiver = nullptr;
        std::swap(dropped, entries);
    }

    void dismissReceiver() {
        const std::scoped_lock lock(mutex);
        if (receiver) receiver->deleteLater();
    }

private:
    // Under the lock, so that the receiver is there.
    void wake() {
        if (!std::exchange(awake, true)) QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
    }

    std::mutex mutex;
    QObject* receiver;  // null once it has ended
    std::multimap<TimePoint, UniqueFunction> entries;
    bool awake = false;  // an event is on its way
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
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User && event->type() != QEvent::Timer) return QObject::event(event);
        runDue();
        return true;
    }

private:
    // What is posted meanwhile waits for the next event, so that the user's input gets its turn.
    void runDue() {
        constexpr Duration longestWait = std::chrono::hours(1);
        for (const TimePoint limit = agenda->answer(); UniqueFunction work = agenda->take(limit);)
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
    agenda->dismissReceiver();
    agenda->end();
}

void UiExecutor::post(UniqueFunction work) { agenda->add(clockTime(), std::move(work)); }

void UiExecutor::postAfter(Duration delay, UniqueFunction work) {
    agenda->add(clockTime() + std::max(delay, Duration::zero()), std::move(work));
}

bool UiExecutor::isCurrent() const { return std::this_thread::get_id() == thread; }

TimePoint UiExecutor::now() const { return clockTime(); }

}  // namespace Corvane
