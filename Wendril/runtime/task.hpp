#pragma once

#include "Wendril/runtime/executor.hpp"

#include <condition_variable>
#include <coroutine>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>
#include <variant>

namespace Wendril {

/// What every coroutine of this runtime carries: where it resumes, and who awaits it.
struct TaskContext {
    std::shared_ptr<Executor> executor;
    TaskContext* awaiter = nullptr;  // absent in a spawned root
    std::coroutine_handle<> handle;
    std::stop_token stop;

    TaskContext& root();
};

/// The right to resume one suspended task, once. It owns that task and those that await it, and
/// destroys them when it is dropped unused. So neither an executor that ends before its functions have
/// run leaks a task, nor a stream that is dropped while one waits for it.
class Continuation {
public:
    Continuation() = default;
    explicit Continuation(TaskContext& task)
        : task(&task) {}
    Continuation(Continuation&& other) noexcept
        : task(std::exchange(other.task, nullptr)) {}
    Continuation& operator=(Continuation&& other) noexcept;
    ~Continuation();

    explicit operator bool() const { return task != nullptr; }

    /// Resumes the task on its executor, later.
    void post() &&;

    /// Resumes the task here and now; its executor must be current.
    void operator()();

private:
    TaskContext* task = nullptr;
};

namespace detail {

/// The coroutine that this thread resumes next, as soon as the running one has suspended. One that
/// resumed the next by a call would need a stack as deep as the chain of tasks is long; the compiler
/// turns such calls into jumps only in optimised builds.
inline thread_local std::coroutine_handle<> handOver;

void resumeAwaiter(TaskContext& finished) noexcept;

template <class Promise>
concept OfThisRuntime = std::is_base_of_v<TaskContext, Promise>;

/// Something that a task can await, made of two functions. `suspend` gets the context of the task and
/// returns whether the task has to wait; if so, it has put the task's Continuation where it will be
/// resumed from. `resume` returns the result of the wait. What they refer to outlives the wait.
template <class Suspend, class Resume>
struct Suspension {
    Suspend suspend;
    Resume resume;

    bool await_ready() const noexcept { return false; }
    template <OfThisRuntime Promise>
    bool await_suspend(std::coroutine_handle<Promise> task) {
        return suspend(static_cast<TaskContext&>(task.promise()));
    }
    auto await_resume() { return resume(); }
};
template <class Suspend, class Resume>
Suspension(Suspend, Resume) -> Suspension<Suspend, Resume>;

struct FinalHandOver {
    bool await_ready() const noexcept { return false; }
    template <OfThisRuntime Promise>
    void await_suspend(std::coroutine_handle<Promise> finished) const noexcept {
        resumeAwaiter(finished.promise());
    }
    void await_resume() const noexcept {}
};

template <class T>
struct TaskResult {
    std::variant<std::monostate, T, std::exception_ptr> result;

    template <class Value>
    void return_value(Value&& value) {
        result.template emplace<1>(std::forward<Value>(value));
    }
    void unhandled_exception() { result.template emplace<2>(std::current_exception()); }
    T take() {
        if (result.index() == 2) std::rethrow_exception(std::get<2>(std::move(result)));
        return std::get<1>(std::move(result));
    }
};

template <>
struct TaskResult<void> {
    std::exception_ptr error;

    void return_void() {}
    void unhandled_exception() { error = std::current_exception(); }
    void take() {
        if (error) std::rethrow_exception(std::move(error));
    }
};

}  // namespace detail

/// A coroutine with one awaiter. It starts when it is awaited, on its awaiter's executor, and resumes
/// there after everything that it awaits itself. `resumeOn` moves this one task to another executor;
/// its awaiter still resumes on its own.
///
/// The task starts later than the call that makes it, so its parameters go by value. The exception is a
/// task that is awaited in the expression that makes it.
///
/// g++ 12 destroys an aggregate twice that is created in an expression with `co_await` and that owns
/// something: a braced list, or a lambda with such captures. Where a task takes one, the task gets a name
/// first: `auto task = f({1, name}); co_await std::move(task);`.
/// Its code also hangs in a condition that awaits when the coroutine declares no variable at all. There
/// the result gets a name first: `const bool done = co_await f(); if (done) …`.
template <class T = void>
class [[nodiscard]] Task {
public:
    struct promise_type : TaskContext, detail::TaskResult<T> {
        Task get_return_object() {
            const auto own = std::coroutine_handle<promise_type>::from_promise(*this);
            handle = own;
            return Task(own);
        }
        std::suspend_always initial_suspend() const noexcept { return {}; }
        detail::FinalHandOver final_suspend() const noexcept { return {}; }
    };

    Task() = default;
    Task(Task&& other) noexcept
        : coroutine(std::exchange(other.coroutine, nullptr)) {}
    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            destroy();
            coroutine = std::exchange(other.coroutine, nullptr);
        }
        return *this;
    }
    ~Task() { destroy(); }

    struct Awaiter {
        std::coroutine_handle<promise_type> awaited;

        bool await_ready() const noexcept { return false; }
        template <detail::OfThisRuntime Promise>
        void await_suspend(std::coroutine_handle<Promise> awaiter) const {
            awaited.promise().executor = awaiter.promise().executor;
            awaited.promise().awaiter = &awaiter.promise();
            detail::handOver = awaited;
        }
        T await_resume() const { return awaited.promise().take(); }
    };

    Awaiter operator co_await() && noexcept { return {coroutine}; }

private:
    explicit Task(std::coroutine_handle<promise_type> coroutine)
        : coroutine(coroutine) {}

    void destroy() {
        if (coroutine) coroutine.destroy();
    }

    std::coroutine_handle<promise_type> coroutine;
};

/// Moves the awaiting task to `executor`, at once when that is current already.
inline auto resumeOn(const std::shared_ptr<Executor>& executor) {
    return detail::Suspension{[&executor](TaskContext& task) {
                                  task.executor = executor;
                                  if (executor->isCurrent()) return false;
                                  Continuation(task).post();
                                  return true;
                              },
                              [] {}};
}

/// The token of the spawned task that the awaiting one belongs to.
Task<std::stop_token> currentStopToken();

/// Something that happens once and that one task can wait for. Any thread may `set` it; only the first
/// call has an effect. The event owns the task that waits for it. So its owner must be something that is
/// sure to set or drop it, such as a timer, and all others refer to it weakly.
class OneShotEvent {
public:
    /// Suspends the awaiting task until `set`; not at all when that has been called.
    auto wait() {
        return detail::Suspension{[this](TaskContext& task) { return suspend(task); }, [] {}};
    }

    void set();

    /// Resumes the task within this call. Its executor must be current.
    void setHere();

private:
    bool suspend(TaskContext& task);
    Continuation take();

    std::mutex mutex;
    bool isSet = false;
    Continuation waiting;
};

/// Sleeps on the task's executor. False when the task is asked to stop, before or meanwhile.
Task<bool> sleepFor(Duration duration);

namespace detail {

/// How a spawned task ended: set by its executor, taken by the thread that waits. Taking moves the
/// result out, so that an exception is destroyed on that thread and not on both at a time.
template <class T>
class Outcome {
public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    void settle(std::variant<Value, std::exception_ptr> outcome) {
        const std::scoped_lock lock(mutex);
        result = std::move(outcome);
        settled.notify_all();
    }

    bool waitUntil(TimePoint limit) {
        std::unique_lock lock(mutex);
        return settled.wait_until(lock, limit, [this] { return result.has_value(); });
    }

    bool isSettled() const {
        const std::scoped_lock lock(mutex);
        return result.has_value();
    }

    T take() {
        std::unique_lock lock(mutex);
        settled.wait(lock, [this] { return result.has_value(); });
        auto outcome = *std::move(result);
        result.emplace();
        lock.unlock();
        if (outcome.index() == 1) std::rethrow_exception(std::get<1>(std::move(outcome)));
        if constexpr (!std::is_void_v<T>) return std::get<0>(std::move(outcome));
    }

private:
    mutable std::mutex mutex;
    std::condition_variable settled;
    std::optional<std::variant<Value, std::exception_ptr>> result;
};

}  // namespace detail

/// What a spawned task fails with when its executor ends before it does.
class TaskDropped : public std::exception {
public:
    const char* what() const noexcept override { return "the executor of the task has ended"; }
};

/// A task that runs by itself. Dropping this neither ends nor cancels it.
template <class T>
class Spawned {
public:
    Spawned(std::stop_source stop, std::shared_ptr<detail::Outcome<T>> outcome)
        : stop(std::move(stop))
        , outcome(std::move(outcome)) {}

    /// Ends its sleeps and shows in its stop token; a request on the line is not cut short.
    void requestStop() { stop.request_stop(); }

    bool isDone() const { return outcome->isSettled(); }

    /// Blocks until it ends, for `duration` at most; returns whether it has ended. Not from its own
    /// executor.
    bool waitFor(Duration duration) {
        return outcome->waitUntil(timeAfter(std::chrono::steady_clock::now(), duration));
    }

    /// Blocks until it ends; returns or throws what it does, or TaskDropped. Once only, and not
    /// from its own executor.
    T get() { return outcome->take(); }

private:
    std::stop_source stop;
    std::shared_ptr<detail::Outcome<T>> outcome;
};

namespace detail {

/// The outermost coroutine of a spawned task. While it is suspended, the continuation that will resume it
/// owns it; it frees itself when it ends.
struct Root {
    struct promise_type : TaskContext {
        Root get_return_object() {
            handle = std::coroutine_handle<promise_type>::from_promise(*this);
            return {this};
        }
        std::suspend_always initial_suspend() const noexcept { return {}; }
        std::suspend_never final_suspend() const noexcept { return {}; }
        void return_void() const noexcept {}
        [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
    };

    TaskContext* context;
};

/// A task and the outcome that it reports at the end of its life: its result, its error, or TaskDropped
/// when it is destroyed before it has ended. Whatever the task holds is destroyed before the report.
template <class T>
struct DetachedTask {
    DetachedTask(Task<T> task, std::shared_ptr<Outcome<T>> outcome)
        : task(std::move(task))
        , outcome(std::move(outcome)) {}
    DetachedTask(DetachedTask&&) noexcept = default;
    DetachedTask& operator=(DetachedTask&&) = delete;
    ~DetachedTask() {
        task = {};
        if (outcome) outcome->settle(std::move(result));
    }

    Task<T> task;
    std::shared_ptr<Outcome<T>> outcome;
    std::variant<typename Outcome<T>::Value, std::exception_ptr> result =
        std::make_exception_ptr(TaskDropped());
};

template <class T>
Root rootOf(DetachedTask<T> detached) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(detached.task);
            detached.result.template emplace<0>();
        } else {
            detached.result.template emplace<0>(co_await std::move(detached.task));
        }
    } catch (...) {
        detached.result = std::current_exception();
    }
}

}  // namespace detail

/// Starts `task` on `executor`, later.
template <class T>
Spawned<T> spawn(std::shared_ptr<Executor> executor, Task<T> task) {
    std::stop_source stop;
    auto outcome = std::make_shared<detail::Outcome<T>>();
    TaskContext& root = *detail::rootOf(detail::DetachedTask<T>(std::move(task), outcome)).context;
    root.executor = std::move(executor);
    root.stop = stop.get_token();
    Continuation(root).post();
    return {std::move(stop), std::move(outcome)};
}

}  // namespace Wendril
