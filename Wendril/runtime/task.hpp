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

/// The right to resume one suspended task, once. Whoever holds it keeps the task and all that await
/// it alive: dropped unused, it destroys them all, so an executor that ends with work undone, or a
/// stream that nobody will ever fill, leaks nothing.
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

/// The coroutine that takes over when the running one has suspended. Handing over through this
/// slot, not through calls, keeps chains of any length off the stack in every build.
inline thread_local std::coroutine_handle<> handOver;

void resumeAwaiter(TaskContext& finished) noexcept;

template <class Promise>
concept OfThisRuntime = std::is_base_of_v<TaskContext, Promise>;

/// Something a task can await: `suspend` is given the task's context and says whether the task has
/// to wait (then it must have passed on its continuation), `resume` gives the result. Both are
/// small lambdas whose captures outlive the wait.
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

/// A lazy coroutine with one awaiter. It starts when it is awaited, on its awaiter's executor, and
/// sticks to it: whatever it awaits, it resumes there. `resumeOn` moves it, and only it: its
/// awaiter resumes on its own executor again.
///
/// Parameters go by value: a reference may be dead when the task runs.
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

/// A place for one suspended task that several may race to resume, from any thread: the first
/// wins, also when it comes before the task is parked. It is owned by the one event that is sure
/// to come (a timer); the task and the others refer to it weakly.
class OneShotEvent {
public:
    /// Suspends the awaiting task until `resume`.
    auto park() {
        return detail::Suspension{[this](TaskContext& task) { return admit(task); }, [] {}};
    }

    void resume();

private:
    bool admit(TaskContext& task);

    std::mutex mutex;
    bool resumed = false;
    Continuation parked;
};

/// Sleeps on the task's executor. False when the task is asked to stop, before or meanwhile.
Task<bool> sleepFor(Duration duration);

namespace detail {

/// How a spawned task ended, between its executor and whoever waits. The result is handed over, not
/// shared: the waiter is the last to hold an exception.
template <class T>
class Outcome {
public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    void settle(std::variant<Value, std::exception_ptr> outcome) {
        const std::scoped_lock lock(mutex);
        result = std::move(outcome);
        settled.notify_all();
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

/// A task at work by itself. Dropping this neither ends nor cancels it.
template <class T>
class Spawned {
public:
    Spawned(std::stop_source stop, std::shared_ptr<detail::Outcome<T>> outcome)
        : stop(std::move(stop))
        , outcome(std::move(outcome)) {}

    /// Ends its sleeps and shows in its stop token; a request on the line is not cut short.
    void requestStop() { stop.request_stop(); }

    bool isDone() const { return outcome->isSettled(); }

    /// Blocks until it ends; returns or throws what it does, or TaskDropped. Once only, and not
    /// from its own executor.
    T get() { return outcome->take(); }

private:
    std::stop_source stop;
    std::shared_ptr<detail::Outcome<T>> outcome;
};

namespace detail {

/// The outermost coroutine of a spawned task: owned by the continuation that will resume it next,
/// and by itself while it runs.
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

/// A task and where its end is reported: what it came to, or TaskDropped if it came to nothing.
/// What the task held is gone before its outcome shows.
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
Root rootOf(DetachedTask<T> errand) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(errand.task);
            errand.result.template emplace<0>();
        } else {
            errand.result.template emplace<0>(co_await std::move(errand.task));
        }
    } catch (...) {
        errand.result = std::current_exception();
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
