#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <string_view>

namespace Soak {

/// What goes wrong with one frame, in the order of `faultNames`.
enum class Fault : std::size_t {
    lostRequest,
    lostReply,
    lateReply,
    doubledReply,
    splitReply,
    mergedReplies,
    truncatedReply,
    flippedHead,
    flippedProduct,
    flippedAddress,
    flippedFunction,
    flippedGroup,
    flippedReserved,
    flippedCount,
    flippedPayload,
    flippedChecksum,
    wrongAddress,
    wrongModule,
    noise,
    falseHead,
    flood,
    refusal,
    echo,
    slowLine,
    stalledAdapter,
    cutWhileWriting,
    cutWhileReading,
    // What happens to the chain or the link, at any time.
    cutWhileOpening,
    muteBoard,
    rebootElsewhere,
};

constexpr std::array<std::string_view, 30> faultNames{
    "request lost",
    "reply lost",
    "reply late",
    "reply doubled",
    "reply split",
    "replies merged",
    "reply truncated",
    "bit of the head",
    "bit of the product",
    "bit of the address",
    "bit of the function",
    "bit of the group",
    "bit of the reserved bytes",
    "bit of the count",
    "bit of the payload",
    "bit of the checksum",
    "reply from another address",
    "reply for another module",
    "noise",
    "false head of 64 words",
    "flood",
    "refusal",
    "echo of the request",
    "slow line",
    "stalled adapter",
    "cut while writing",
    "cut while reading",
    "cut while opening",
    "mute board",
    "reboot to another address",
};

constexpr std::size_t frameFaults = static_cast<std::size_t>(Fault::cutWhileOpening);

/// Chance of each fault, for each frame or for each opening.
using Weather = std::map<Fault, double>;

}  // namespace Soak
