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

// The root owns the task that it awaits, that one the next, and so on down to the suspended one.
Continuation::~Continuation() {
    if (task) task->root().handle.destroy();
}

// The task may run, end and be gone before the executor's `post` returns.
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

bool OneShotEvent::admit(TaskContext& task) {
    const std::scoped_lock lock(mutex);
    if (resumed) return false;
    parked = Continuation(task);
    return true;
}

void OneShotEvent::resume() {
    Continuation task;
    {
        const std::scoped_lock lock(mutex);
        resumed = true;
        task = std::move(parked);
    }
    if (task) std::move(task).post();
}

namespace {

// A task of its own knows its executor and its root as its awaiter does.
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
    std::weak_ptr<OneShotEvent> place;
    {
        auto parking = std::make_shared<OneShotEvent>();
        place = parking;
        context->executor->postAfter(duration, [parking = std::move(parking)] { parking->resume(); });
    }
    const std::stop_callback wake(stop, [place] {
        if (const auto parking = place.lock()) parking->resume();
    });
    if (OneShotEvent* const parking = place.lock().get()) co_await parking->park();
    co_return !stop.stop_requested();
}

}  // namespace Wendril
