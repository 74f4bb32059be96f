#include "app/model/uiexecutor.hpp"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace Corvane {

using Wendril::Duration;
using Wendril::TimePoint;
using Wendril::UniqueFunction;

namespace {

constexpr TimePoint never = TimePoint::max();

TimePoint clockTime() { return std::chrono::steady_clock::now(); }

}  // namespace

// The work that waits, by due time; entries due together keep their order. Suspended tasks wait here,
// and each owns its executor. The agenda therefore cannot end with the executor alone: the receiver,
// a child of the application, ends it at the latest.
class UiExecutor::Agenda {
public:
    explicit Agenda(Receiver* receiver)
        : receiver(receiver) {}

    void add(TimePoint due, UniqueFunction work) {
        const std::scoped_lock lock(mutex);
        if (!receiver) return;
        const auto added = entries.emplace(due, std::move(work));
        if (added == entries.begin()) callReceiver();
    }

    // Call it when the event or the timer has come. Returns the time.
    TimePoint begin();

    // Takes the next entry that is due by `limit`; empty when there is none. The entry may run an
    // event loop of its own, so that the receiver is called again for the entries after it.
    UniqueFunction take(TimePoint limit) {
        const std::scoped_lock lock(mutex);
        if (entries.empty()) return {};
        if (entries.begin()->first > limit) {
            callReceiver();
            return {};
        }
        auto next = entries.extract(entries.begin());
        if (!entries.empty()) callReceiver();
        return std::move(next.mapped());
    }

    // Drops all work. Its destruction may post more, which is dropped at once.
    void end() {
        std::multimap<TimePoint, UniqueFunction> dropped;
        const std::scoped_lock lock(mutex);
        receiver = nullptr;
        std::swap(dropped, entries);
    }

    void deleteReceiver();

private:
    // Has the receiver called for the first entry. Call it under the lock: the receiver cannot end
    // meanwhile. Its own thread starts a timer where there is time, which spares the event loop a turn.
    void callReceiver();

    std::mutex mutex;
    Receiver* receiver;  // null once it has ended
    std::multimap<TimePoint, UniqueFunction> entries;
    bool eventSent = false;      // and not yet arrived
    TimePoint timerDue = never;  // of the receiver's timer
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
    QBasicTimer timer;

protected:
    void customEvent(QEvent*) override { runDue(); }
    void timerEvent(QTimerEvent*) override { runDue(); }

private:
    // Runs what is due now. Work that is posted meanwhile waits for the next event, so that the user's
    // input is handled before it.
    void runDue() const {
        for (const TimePoint limit = agenda->begin(); UniqueFunction work = agenda->take(limit);)
            work();
    }
};

void UiExecutor::Agenda::deleteReceiver() {
    const std::scoped_lock lock(mutex);
    if (receiver) receiver->deleteLater();
}

TimePoint UiExecutor::Agenda::begin() {
    const std::scoped_lock lock(mutex);
    eventSent = false;
    timerDue = never;
    if (receiver) receiver->timer.stop();
    return clockTime();
}

void UiExecutor::Agenda::callReceiver() {
    constexpr Duration longestWait = std::chrono::hours(1);
    const TimePoint due = entries.begin()->first;
    if (eventSent || due == timerDue) return;
    const Duration left = due - clockTime();
    if (left <= Duration::zero() || receiver->thread() != QThread::currentThread()) {
        eventSent = true;
        QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
        return;
    }
    timerDue = due;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(std::min(left, longestWait));
    receiver->timer.start(static_cast<int>(wait.count()), Qt::PreciseTimer, receiver);
}

UiExecutor::UiExecutor()
    : thread(std::this_thread::get_id())
    , agenda((new Receiver(QCoreApplication::instance()))->agenda) {}

UiExecutor::~UiExecutor() {
    agenda->deleteReceiver();
    agenda->end();
}

void UiExecutor::post(UniqueFunction work) { agenda->add(clockTime(), std::move(work)); }

void UiExecutor::postAfter(Duration delay, UniqueFunction work) {
    agenda->add(Wendril::timeAfter(clockTime(), std::max(delay, Duration::zero())), std::move(work));
}

bool UiExecutor::isCurrent() const { return std::this_thread::get_id() == thread; }

TimePoint UiExecutor::now() const { return clockTime(); }

}  // namespace Corvane
