#pragma once

#include "Wendril/runtime/uniquefunction.hpp"

#include <chrono>

namespace Wendril {

using Duration = std::chrono::nanoseconds;
using TimePoint = std::chrono::time_point<std::chrono::steady_clock, Duration>;

/// The moment `delay` after `start`; the last moment of the clock where that lies beyond it. So a delay
/// of Duration::max() means "never".
constexpr TimePoint timeAfter(TimePoint start, Duration delay) {
    return delay < TimePoint::max() - start ? start + delay : TimePoint::max();
}

/// A serial executor: runs functions one at a time, those posted from one thread in the order of
/// posting. It has a clock of its own: real time on a thread, virtual time in a test. All members may be
/// called from any thread.
class Executor {
public:
    virtual ~Executor() = default;

    virtual void post(UniqueFunction function) = 0;

    /// Runs `function` once `delay` has passed; a delay of zero or less means as soon as possible.
    virtual void postAfter(Duration delay, UniqueFunction function) = 0;

    /// True while the calling thread runs a function of this executor.
    virtual bool isCurrent() const = 0;

    virtual TimePoint now() const = 0;

protected:
    Executor() = default;
    Executor(const Executor&) = default;
    Executor& operator=(const Executor&) = default;
};

}  // namespace Wendril
