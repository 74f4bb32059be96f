#pragma once

#include "Wendril/runtime/uniquefunction.hpp"

#include <chrono>

namespace Wendril {

using Duration = std::chrono::nanoseconds;
using TimePoint = std::chrono::time_point<std::chrono::steady_clock, Duration>;

/// A serial executor: runs what it is given one piece at a time, and work posted from one thread
/// in the order of posting. Time is its own: real on a thread, virtual in a test. All members may
/// be called from any thread.
class Executor {
public:
    virtual ~Executor() = default;

    virtual void post(UniqueFunction work) = 0;

    /// Runs `work` once `delay` has passed; a delay of zero or less means as soon as possible.
    virtual void postAfter(Duration delay, UniqueFunction work) = 0;

    /// True while the calling thread runs this executor's work.
    virtual bool isCurrent() const = 0;

    virtual TimePoint now() const = 0;

protected:
    Executor() = default;
    Executor(const Executor&) = default;
    Executor& operator=(const Executor&) = default;
};

}  // namespace Wendril
