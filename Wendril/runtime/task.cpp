#include "Wendril/runtime/task.hpp"

namespace Wendril {

TaskContext& TaskContext::root() {
    TaskContext* context = this;
    while (context->awaiter)
        context = context->awaiter;
    return *context;
}

Continuation& Continuation::operator=(Continuation&& other) noexcept {
    std::swap(task, other.task);
    const Continuation dropped(std::move(other));
    return *this;
}

// The root owns the task that it awaits, which owns the next, and so on down to the suspended one.
Continuation::~Continuation() {
    if (task) task->root().handle.destroy();
}

// Another thread may run the task to its end before the executor's `post` returns, and with it drop the
// last reference to the executor but this one.
void Continuation::post() && {
    const auto executor = task->executor;
    executor->post(std::move(*this));
}

void Continuation::operator()() {
    for (auto next = std::exchange(task, nullptr)->handle; next;
         next = std::exchange(detail::handOver, nullptr))
        next.resume();
}

namespace detail {

void resumeAwaiter(TaskContext& finished) noexcept {
    TaskContext& awaiter = *finished.awaiter;
    if (awaiter.executor->isCurrent())
        handOver = awaiter.handle;
    else
        Continuation(awaiter).post();
}

}  // namespace detail

bool OneShotEvent::suspend(TaskContext& task) {
    const std::scoped_lock lock(mutex);
    if (isSet) return false;
    waiting = Continuation(task);
    return true;
}

Continuation OneShotEvent::take() {
    const std::scoped_lock lock(mutex);
    isSet = true;
    return std::move(waiting);
}

void OneShotEvent::set() {
    if (Continuation task = take()) std::move(task).post();
}

void OneShotEvent::setHere() {
    if (Continuation task = take()) task();
}

namespace {

// Gives a task its own context, whose executor and root are those of its awaiter.
auto contextOfTask(TaskContext*& context) {
    return detail::Suspension{[&context](TaskContext& task) {
                                  context = &task;
                                  return false;
                              },
                              [] {}};
}

}  // namespace

Task<std::stop_token> currentStopToken() {
    TaskContext* context = nullptr;
    co_await contextOfTask(context);
    co_return context->root().stop;
}

Task<bool> sleepFor(Duration duration) {
    TaskContext* context = nullptr;
    co_await contextOfTask(context);
    const std::stop_token stop = context->root().stop;
    std::weak_ptr<OneShotEvent> over;
    {
        auto timerOwned = std::make_shared<OneShotEvent>();
        over = timerOwned;
        context->executor->postAfter(duration, [over = std::move(timerOwned)] { over->setHere(); });
    }
    const std::stop_callback wake(stop, [over] {
        if (const auto event = over.lock()) event->set();
    });
    if (OneShotEvent* const event = over.lock().get()) co_await event->wait();
    co_return !stop.stop_requested();
}

}  // namespace Wendril
