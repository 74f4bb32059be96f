#pragma once

#include "Wendril/runtime/executor.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace Wendril {

/// An executor with a name and a thread of its own, built round one `poll` loop: posted functions,
/// timers and descriptors to watch. Destroying it ends the loop after the function that is running; the
/// others are dropped. It may be destroyed from a function that it runs.
class SerialQueue final : public Executor {
public:
    using WatchId = std::uint64_t;

    /// Called on the queue with the `poll` events that are set (POLLIN, POLLOUT, POLLERR, POLLHUP).
    using Ready = std::function<void(short events)>;

    /// Debuggers show `name` for the thread.
    explicit SerialQueue(const std::string& name);
    ~SerialQueue() override;
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    void post(UniqueFunction function) override;
    void postAfter(Duration delay, UniqueFunction function) override;
    bool isCurrent() const override;
    TimePoint now() const override;

    /// Calls `ready` whenever `descriptor` has one of `events`, level-triggered; errors and hang-up
    /// always count. `ready` is destroyed on the queue once the watch has ended, so a descriptor
    /// that it owns is never closed during a read. This and the next two may be called from any thread.
    WatchId watch(int descriptor, short events, Ready ready);

    /// Changes the events of a watch; nothing when it has ended.
    void setEvents(WatchId id, short events);

    /// Ends a watch: `ready` is not called again once this has run on the queue.
    void unwatch(WatchId id);

private:
    class Loop;

    std::shared_ptr<Loop> loop;
    std::thread thread;
};

}  // namespace Wendril
