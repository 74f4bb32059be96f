#pragma once

#include "Wendril/runtime/executor.hpp"
#include "Wendril/runtime/task.hpp"

#include <functional>
#include <memory>
#include <string>

namespace Simulator {

/// A clock without a wall: runs everything that is due, in the order in which it was set, then
/// jumps to the next due time. It never sleeps. The clock and all its executors belong to one
/// thread. Work still undone when the clock ends is dropped.
class VirtualTime {
public:
    VirtualTime();
    ~VirtualTime();
    VirtualTime(const VirtualTime&) = delete;
    VirtualTime& operator=(const VirtualTime&) = delete;

    /// A serial executor on this clock. It may outlive the clock; it runs nothing then.
    std::shared_ptr<Wendril::Executor> executor();

    Wendril::TimePoint now() const;

    /// Time passed since the clock was made.
    Wendril::Duration elapsed() const;

    /// Runs until nothing is left to do.
    void runUntilIdle();

    /// Runs until `done`, or nothing is left to do; says whether it is done.
    bool runUntil(const std::function<bool()>& done);

    /// Runs all that is due within `duration`, and lets it pass.
    void advance(Wendril::Duration duration);

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
