#include "simulator/requests.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/profile.hpp"
#include "Wendril/text.hpp"
#include "Wendril/values.hpp"

#include <algorithm>
#include <array>
#include <chrono>

namespace Simulator {

using namespace Wendril;
using namespace std::chrono_literals;

namespace {

constexpr std::size_t headerBytes = 4;  // of a module payload
constexpr std::size_t presetSlots = 32;

std::uint8_t moduleOf(const Frame& frame) { return u8(frame.payload, 1); }

std::size_t valueBytes(const ModuleRef& ref) {
    const auto factory = ModuleValue::factory(ref);
    return factory ? factory->encoded().size() : 0;
}

std::string sizeFault(const Frame& request, std::size_t expected) {
    return "payload of " + std::to_string(request.payload.size()) + " bytes instead of " +
           std::to_string(expected);
}

std::optional<std::string> moduleFault(const Frame& request) {
    const auto ref = K7Q::module(moduleOf(request));
    if (!ref) return "no module " + std::to_string(moduleOf(request));
    if (request.function() == Fun::moduleSet && ref->kind == ModuleKind::vu)
        return "write to the meter " + labelOf(*ref);
    const std::size_t expected = headerBytes + valueBytes(*ref);
    if (request.payload.size() != expected) return sizeFault(request, expected);
    if (request.payload[0] != 0 || request.payload[2] != 0 || request.payload[3] != 0)
        return "module header not zero";
    return std::nullopt;
}

bool allFrom(ByteView bytes, std::size_t from, std::uint8_t value) {
    return std::ranges::all_of(bytes.subspan(from), [value](std::uint8_t byte) { return byte == value; });
}

struct Shape {
    Fun fun;
    std::size_t payloadBytes;
    Duration timeout;
    const char* name;
};

// The commands whose payload has one length, with the time that the host waits for their replies.
constexpr std::array shapes{
    Shape{Fun::linkStatus, 8, 200ms, "ping"},
    Shape{Fun::devInfo, 0, 400ms, "identify"},
    Shape{Fun::presetInfoGet, 0, 750ms, "read the preset directory"},
    Shape{Fun::presetName, 24, 750ms, "read the name of preset"},
    Shape{Fun::presetSave, 24, 3s, "save preset"},
    Shape{Fun::presetLoad, 4, 3s, "load preset"},
    Shape{Fun::presetDelete, 4, 750ms, "delete presets with mask"},
    Shape{Fun::netStart, 0, 5s, "start addressing"},
    Shape{Fun::netAddressSet, 4, 750ms, "take address"},
};

const Shape* shapeOf(const Frame& frame) {
    const auto* found = std::ranges::find(shapes, frame.function(),
                                          [](const Shape& shape) { return std::optional(shape.fun); });
    return found == shapes.end() ? nullptr : found;
}

std::optional<std::string> contentFault(const Frame& request) {
    const ByteView payload(request.payload);
    switch (*request.function()) {
    case Fun::linkStatus:
        if (!allFrom(payload, 0, 0)) return "ping payload not zero";
        return std::nullopt;
    case Fun::presetName:
        if (!allFrom(payload, headerBytes, ' ')) return "name field of a name request not spaces";
        [[fallthrough]];
    case Fun::presetSave:
    case Fun::presetLoad:
        if (u32(payload, 0) >= presetSlots) return "no preset slot " + std::to_string(u32(payload, 0));
        return std::nullopt;
    case Fun::netAddressSet:
        if (payload[0] == 0 || payload[0] == everyone || !allFrom(payload, 1, 0)) return "not an address";
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

std::string valueText(const ModuleRef& ref, ByteView bytes) {
    if (const auto value = ModuleValue::decode(ref.kind, bytes)) return " " + fieldsText(*value);
    if (ref.kind != ModuleKind::vu) return " (no value)";
    std::string text;
    for (std::size_t at = 0; at + 4 <= bytes.size(); at += 4)
        text += " " + std::to_string(f32(bytes, at));
    return text;
}

std::string moduleMeaning(const Frame& frame, bool fromHost) {
    const auto ref = K7Q::module(moduleOf(frame));
    const std::string label = ref ? labelOf(*ref) : "module " + std::to_string(moduleOf(frame));
    const ByteView payload(frame.payload);
    const std::string value =
        ref ? valueText(*ref, payload.subspan(std::min(headerBytes, payload.size()))) : "";
    if (!fromHost) return label + ":" + value;
    return frame.function() == Fun::moduleGet ? "read " + label : "write " + label + value;
}

std::string requestMeaning(const Frame& frame) {
    const Shape* const shape = shapeOf(frame);
    if (!shape) return "function " + std::to_string(frame.fun);
    std::string text = shape->name;
    if (shape->payloadBytes == 24 || shape->payloadBytes == 4)
        text += " " + std::to_string(u32(frame.payload, 0));
    if (shape->fun == Fun::presetSave && frame.payload.size() > headerBytes)
        text += " as \"" + fieldText(ByteView(frame.payload).subspan(headerBytes)) + "\"";
    return text;
}

std::string replyMeaning(const Frame& frame) {
    const ByteView payload(frame.payload);
    switch (frame.function().value_or(Fun::groupSet)) {
    case Fun::ack:
        return (u8(payload, 0) == 0 ? "accepts function " : "refuses function ") +
               std::to_string(u8(payload, 1));
    case Fun::linkStatus:
        return "is there";
    case Fun::devInfo:
        return payload.size() < 28 ? "identity" : "is a " + fieldText(payload.subspan(16, 12));
    case Fun::presetInfoGet:
        return "presets: start-up " + std::to_string(u32(payload, 0)) + ", stored mask " +
               std::to_string(u32(payload, 4)) + ", current " + std::to_string(u32(payload, 8));
    case Fun::presetName:
        return "preset " + std::to_string(u32(payload, 0)) + " is named \"" +
               fieldText(payload.subspan(std::min(headerBytes, payload.size()))) + "\"";
    default:
        return "function " + std::to_string(frame.fun);
    }
}

// Whether the answer is an `ack`, not a frame of the same function.
bool isAcknowledged(const Frame& request) {
    switch (request.function().value_or(Fun::ack)) {
    case Fun::moduleSet:
    case Fun::presetSave:
    case Fun::presetLoad:
    case Fun::presetDelete:
    case Fun::netStart:
    case Fun::netAddressSet:
        return true;
    default:
        return false;
    }
}

}  // namespace

bool isBroadcast(const Frame& frame) { return frame.product == everyone && frame.address == everyone; }

std::optional<std::string> faultOf(const Frame& request) {
    if (request.gnumber != 0 || request.gmember != 0) return "group bytes not zero";
    const auto fun = request.function();
    if (isBroadcast(request)) {
        if (fun != Fun::netStart && fun != Fun::devInfo && fun != Fun::netAddressSet)
            return "function " + std::to_string(request.fun) + " is no broadcast";
    } else {
        if (request.product != K7Q::productID)
            return "no board of product " + std::to_string(request.product);
        if (fun == Fun::netStart || fun == Fun::netAddressSet) return "addressing command not broadcast";
        if (request.address == everyone) return "broadcast address with a product";
    }
    if (fun == Fun::moduleGet || fun == Fun::moduleSet) return moduleFault(request);
    const Shape* const shape = shapeOf(request);
    if (!shape) return "function " + std::to_string(request.fun) + " is not for the host to send";
    if (request.payload.size() != shape->payloadBytes) return sizeFault(request, shape->payloadBytes);
    return contentFault(request);
}

Duration replyTimeout(const Frame& request) {
    if (const Shape* const shape = shapeOf(request)) return shape->timeout;
    const bool meters = request.function() == Fun::moduleGet && moduleOf(request) >= K7Q::meterIndex;
    return meters ? 300ms : 750ms;
}

bool answers(const Frame& reply, const Frame& request) {
    const bool sameAddress = reply.address == request.address;
    if (reply.function() == Fun::ack)
        return u8(reply.payload, 1) == request.fun && (sameAddress || request.function() != Fun::moduleSet);
    if (isAcknowledged(request) || reply.fun != request.fun) return false;
    if (!sameAddress && !isBroadcast(request)) return false;
    if (request.function() == Fun::moduleGet) return moduleOf(reply) == moduleOf(request);
    return request.function() != Fun::presetName || u32(reply.payload, 0) == u32(request.payload, 0);
}

std::string meaningOf(const Frame& frame, bool fromHost) {
    const std::string who = fromHost && isBroadcast(frame) ? "all: " : twoDigits(frame.address) + ": ";
    if (frame.function() == Fun::moduleGet || frame.function() == Fun::moduleSet)
        return who + moduleMeaning(frame, fromHost);
    return who + (fromHost ? requestMeaning(frame) : replyMeaning(frame));
}

RequestReader::Reading RequestReader::feed(ByteView data) {
    using namespace FrameCodec;
    append(buffer, data);
    Reading reading;
    const auto drop = [this](std::size_t count) {
        buffer.erase(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
    };
    const auto complain = [this, &reading, &drop](const char* what) {
        reading.faults.push_back(std::string(what) + ": " +
                                 hex(ByteView(buffer).first(std::min<std::size_t>(buffer.size(), 24))));
        const auto next = std::find(buffer.begin() + 1, buffer.end(), head);
        drop(static_cast<std::size_t>(next - buffer.begin()));
    };
    while (!buffer.empty()) {
        if (buffer[0] != head) {
            complain("bytes outside a frame");
            continue;
        }
        if (buffer.size() < FrameCodec::headerBytes) break;
        const std::uint32_t words = u32(buffer, 8);
        if (words > maxWords) {
            complain("impossible word count");
            continue;
        }
        // The start of addressing carries one byte that neither count nor checksum covers.
        const std::size_t stray = buffer[3] == static_cast<std::uint8_t>(Fun::netStart) ? 1 : 0;
        const std::size_t payloadEnd = FrameCodec::headerBytes + std::size_t{4} * words;
        const std::size_t size = payloadEnd + stray + checksumBytes;
        if (buffer.size() < size) break;
        const ByteView payload =
            ByteView(buffer).subspan(FrameCodec::headerBytes, payloadEnd - FrameCodec::headerBytes);
        if (checksum(payload, words) != u32(buffer, payloadEnd + stray) ||
            (stray != 0 && buffer[payloadEnd] != 0)) {
            complain("wrong checksum");
            continue;
        }
        if (buffer[6] != 0 || buffer[7] != 0) reading.faults.emplace_back("reserved bytes not zero");
        reading.requests.emplace_back(buffer[1], buffer[2], buffer[3], buffer[4], buffer[5],
                                      Bytes(payload.begin(), payload.end()));
        drop(size);
    }
    return reading;
}

}  // namespace Simulator
