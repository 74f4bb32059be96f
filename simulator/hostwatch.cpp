#include "simulator/hostwatch.hpp"

#include "simulator/requests.hpp"

#include "Wendril/bus.hpp"

#include <utility>

namespace Simulator {

using namespace Wendril;

std::optional<Frame> HostWatch::sent(const Frame& next, TimePoint earliest, TimePoint now,
                                     const OnFrame& onFrame) {
    giveUpFrame(now, onFrame);
    const bool isEarly = request && now < until;
    std::optional<Frame> before = std::exchange(request, next);
    until = earliest + replyTimeout(next);
    isOver = false;
    return isEarly ? std::move(before) : std::nullopt;
}

void HostWatch::received(ByteView bytes, TimePoint now, const OnFrame& onFrame) {
    giveUpFrame(now, onFrame);
    lastReception = now;
    parser.feed(bytes, [&](const Frame& frame) { take(frame, onFrame); });
}

// At the end of its time-out, a host gives up a frame whose rest does not come.
void HostWatch::giveUpFrame(TimePoint now, const OnFrame& onFrame) {
    if (!request || isOver || now < until) return;
    if (until - lastReception >= Bus::longestPauseInFrame)
        parser.giveUp([&](const Frame& frame) { take(frame, onFrame); });
    isOver = true;
}

void HostWatch::take(const Frame& frame, const OnFrame& onFrame) {
    const bool isReply = request && !isOver && answers(frame, *request);
    if (onFrame) onFrame(frame, isReply);
    if (isReply) request.reset();
}

void HostWatch::reset() {
    request.reset();
    parser.reset();
}

}  // namespace Simulator
