#pragma once

#include "Wendril/frame.hpp"
#include "Wendril/runtime/executor.hpp"

#include <optional>
#include <string>
#include <vector>

// The rules of the protocol for the host's requests, and frames in words.
namespace Simulator {

/// Product and address of a broadcast.
constexpr std::uint8_t everyone = 0xFF;

bool isBroadcast(const Wendril::Frame& frame);

/// What is wrong with a request that arrived intact: its command, its addressee or the length or
/// content of its payload. None when it is exactly what the protocol asks for.
std::optional<std::string> faultOf(const Wendril::Frame& request);

/// The host's time-out for the reply. It must not send again before the reply or the time-out.
Wendril::Duration replyTimeout(const Wendril::Frame& request);

/// Whether the host takes `reply` for the answer to `request`.
bool answers(const Wendril::Frame& reply, const Wendril::Frame& request);

/// The meaning of a frame in words, with the values that it carries.
std::string meaningOf(const Wendril::Frame& frame, bool fromHost);

/// Splits the host's byte stream into requests. A real board skips bytes that belong to no
/// well-formed frame; here they are faults.
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
