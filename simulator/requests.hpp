#pragma once

#include "Wendril/frame.hpp"
#include "Wendril/runtime/executor.hpp"

#include <optional>
#include <string>
#include <vector>

// What the host may send, and what a careful board engineer would say about it.
namespace Simulator {

/// Product and address of a broadcast.
constexpr std::uint8_t everyone = 0xFF;

bool isBroadcast(const Wendril::Frame& frame);

/// What is wrong with a request that arrived intact: its command, its addressee or the length or
/// content of its payload. None when it is exactly what the protocol asks for.
std::optional<std::string> faultOf(const Wendril::Frame& request);

/// How long the host waits for the reply; until then, or the reply, it must keep silent.
Wendril::Duration replyTimeout(const Wendril::Frame& request);

/// Whether the host takes `reply` for the answer to `request`.
bool answers(const Wendril::Frame& reply, const Wendril::Frame& request);

/// The meaning of a frame in words, with the values that it carries.
std::string meaningOf(const Wendril::Frame& frame, bool fromHost);

/// Cuts the host's byte stream into requests, without the forgiveness of a real board: every byte
/// that is not part of a well-formed frame is a fault.
class RequestReader {
public:
    struct Reading {
        std::vector<Wendril::Frame> requests;
        std::vector<std::string> faults;
    };

    Reading feed(Wendril::ByteView data);

    /// True while a frame has begun and not ended.
    bool midFrame() const { return !buffer.empty(); }
    void reset() { buffer.clear(); }

private:
    Wendril::Bytes buffer;
};

}  // namespace Simulator
