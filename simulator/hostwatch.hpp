#pragma once

#include "Wendril/frame.hpp"
#include "Wendril/runtime/executor.hpp"

#include <functional>
#include <optional>

namespace Simulator {

/// Sees what a host sends and receives, and knows which request waits for its reply. A host must not
/// send again before it has the reply or its time-out has passed.
class HostWatch {
public:
    /// Gets a frame that the host has received, and whether it answers the request that waits.
    using OnFrame = std::function<void(const Wendril::Frame& frame, bool isReply)>;

    /// The host sends a request, not before `earliest` and not after `now`. Returns the request before
    /// it when that one was neither answered nor given up.
    std::optional<Wendril::Frame> sent(const Wendril::Frame& request, Wendril::TimePoint earliest,
                                       Wendril::TimePoint now, const OnFrame& onFrame = nullptr);

    void received(Wendril::ByteView bytes, Wendril::TimePoint now, const OnFrame& onFrame);

    /// The request that was neither answered nor replaced by another one.
    const std::optional<Wendril::Frame>& waiting() const { return request; }

    /// Whether the host holds a frame that has begun and not ended.
    bool isMidFrame() const { return !parser.pending().empty(); }

    void reset();

private:
    void giveUpFrame(Wendril::TimePoint now, const OnFrame& onFrame);
    void take(const Wendril::Frame& frame, const OnFrame& onFrame);

    std::optional<Wendril::Frame> request;
    Wendril::TimePoint until;     // earliest end of its time-out
    bool isOver = false;          // the time-out
    Wendril::FrameParser parser;  // reads as the host does
    Wendril::TimePoint lastReception;
};

}  // namespace Simulator
