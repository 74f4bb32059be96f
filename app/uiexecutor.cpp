#include "app/uiexecutor.hpp"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <mutex>
#include <utility>
#include <vector>

namespace Corvane {

using Wendril::Duration;
using Wendril::Work;

// One event wakes the loop for all that has been posted by then.
class UiExecutor::Inbox final : public QObject {
public:
    void put(Work work) {
        {
            const std::scoped_lock lock(mutex);
            posted.push_back(std::move(work));
            if (std::exchange(announced, true)) return;
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    // Dropped work may drop or post more.
    void empty() {
        for (;;) {
            const std::vector<Work> dropped = take();
            if (dropped.empty()) return;
        }
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        for (Work& work : take()) {
            work();
            work = {};
        }
        return true;
    }

private:
    std::vector<Work> take() {
        const std::scoped_lock lock(mutex);
        announced = false;
        return std::exchange(posted, {});
    }

    std::mutex mutex;
    std::vector<Work> posted;
    bool announced = false;
};

UiExecutor::UiExecutor()
    : inbox(std::make_unique<Inbox>()) {}

UiExecutor::~UiExecutor() { inbox->empty(); }

void UiExecutor::post(Work work) { inbox->put(std::move(work)); }

void UiExecutor::postAfter(Duration delay, Work work) {
    if (!isCurrent())
        return post([this, due = now() + delay, work = std::move(work)]() mutable {
            postAfter(due - now(), std::move(work));
        });
    const auto shared = std::make_shared<Work>(std::move(work));
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(std::max(delay, Duration::zero()));
    QTimer::singleShot(wait, Qt::PreciseTimer, inbox.get(), [shared] { (*shared)(); });
}

bool UiExecutor::isCurrent() const { return QThread::currentThread() == inbox->thread(); }

Wendril::TimePoint UiExecutor::now() const { return std::chrono::steady_clock::now(); }

}  // namespace Corvane
