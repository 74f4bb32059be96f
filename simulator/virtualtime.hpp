#pragma once

#include "Wendril/runtime/executor.hpp"
#include "Wendril/runtime/task.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace Simulator {

/// A simulated clock: it runs the work that is due, in the order in which it was posted, then jumps
/// to the next due time. It never sleeps. The clock and its executors belong to one thread. Work
/// that is not done when the clock is destroyed is dropped.
class VirtualTime {
public:
    VirtualTime();
    ~VirtualTime();
    VirtualTime(const VirtualTime&) = delete;
    VirtualTime& operator=(const VirtualTime&) = delete;

    /// A serial executor on this clock. It may outlive the clock, and drops all work from then on.
    std::shared_ptr<Wendril::Executor> executor();

    Wendril::TimePoint now() const;

    /// Time passed since the clock was made.
    Wendril::Duration elapsed() const;

    /// Runs until nothing is left to do.
    void runUntilIdle();

    /// Runs until `done`, or nothing is left to do; says whether it is done.
    bool runUntil(const std::function<bool()>& done);

    /// Runs the work that is due within `duration`, and moves the clock on by it.
    void advance(Wendril::Duration duration);

    /// Blocks the executor whose function is running, as a system call would: for `duration`, the
    /// functions of the others run, and its own wait.
    void block(Wendril::Duration duration);

    /// Functions that wait for their time.
    std::size_t waiting() const;

    /// Runs `task` on an executor of its own to its end; returns or throws what it does.
    template <class T>
    T run(Wendril::Task<T> task) {
        auto spawned = Wendril::spawn(executor(), std::move(task));
        runUntil([&spawned] { return spawned.isDone(); });
        return spawned.get();
    }

private:
    class Agenda;
    class ClockExecutor;

    const std::shared_ptr<Agenda> agenda;
};

}  // namespace Simulator
