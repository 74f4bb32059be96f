#include "Wendril/frame.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>

namespace Wendril {

namespace {

constexpr auto knownCodes = [] {
    std::array<bool, 256> known{};
    for (const Fun fun :
         {Fun::ack, Fun::linkStatus, Fun::devInfo, Fun::moduleGet, Fun::moduleSet, Fun::presetInfoGet,
          Fun::presetInfoSet, Fun::presetName, Fun::presetSave, Fun::presetLoad, Fun::presetDelete,
          Fun::presetWrite, Fun::netStart, Fun::netAddressSet, Fun::modelSet, Fun::groupSet})
        known[static_cast<std::uint8_t>(fun)] = true;
    return known;
}();

// The caller has checked that the four bytes exist.
std::uint32_t wordAt(const std::uint8_t* bytes) {
    std::uint32_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap32(word);
    return word;
}

}  // namespace

std::optional<Fun> funFromRaw(std::uint8_t raw) {
    if (!knownCodes[raw]) return std::nullopt;
    return static_cast<Fun>(raw);
}

Frame::Frame(std::uint8_t product, std::uint8_t address, Fun fun, Bytes payload)
    : Frame(product, address, static_cast<std::uint8_t>(fun), 0, 0, std::move(payload)) {}

Frame::Frame(std::uint8_t product, std::uint8_t address, std::uint8_t fun, std::uint8_t gnumber,
             std::uint8_t gmember, Bytes payload)
    : product(product)
    , address(address)
    , fun(fun)
    , gnumber(gnumber)
    , gmember(gmember)
    , payload(std::move(payload)) {}

std::uint8_t u8(ByteView bytes, std::size_t i) { return i < bytes.size() ? bytes[i] : 0; }

std::uint16_t u16(ByteView bytes, std::size_t i) {
    return static_cast<std::uint16_t>(u8(bytes, i) | u8(bytes, i + 1) << 8);
}

std::uint32_t u32(ByteView bytes, std::size_t i) {
    return u16(bytes, i) | static_cast<std::uint32_t>(u16(bytes, i + 2)) << 16;
}

float f32(ByteView bytes, std::size_t i) { return std::bit_cast<float>(u32(bytes, i)); }

void appendU32(Bytes& bytes, std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

void appendF32(Bytes& bytes, float value) { appendU32(bytes, std::bit_cast<std::uint32_t>(value)); }

void append(Bytes& bytes, ByteView more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

std::string hex(ByteView bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 3);
    for (const std::uint8_t byte : bytes) {
        if (!text.empty()) text += ' ';
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

namespace FrameCodec {

Bytes encode(const Frame& frame, bool omitPayload, ByteView stray) {
    const std::size_t words = frame.payload.size() / 4;
    Bytes bytes;
    bytes.reserve(headerBytes + frame.payload.size() + stray.size() + checksumBytes);
    bytes.assign({head, frame.product, frame.address, frame.fun, frame.gnumber, frame.gmember, 0, 0});
    appendU32(bytes, static_cast<std::uint32_t>(words));
    if (!omitPayload) append(bytes, frame.payload);
    append(bytes, stray);
    appendU32(bytes, checksum(frame.payload, words));
    return bytes;
}

std::uint32_t checksum(ByteView data, std::size_t words) {
    auto sum = static_cast<std::uint32_t>(words);
    const std::size_t whole = std::min(words, data.size() / 4);
    for (std::size_t k = 0; k < whole; ++k)
        sum += wordAt(data.data() + 4 * k);
    if (whole < words) sum += u32(data, 4 * whole);
    return 0 - sum;
}

}  // namespace FrameCodec

std::vector<Frame> FrameParser::feed(ByteView data) {
    constexpr std::size_t shortest = FrameCodec::headerBytes + FrameCodec::checksumBytes;
    constexpr std::size_t readAtOnce = 4096;  // a transport delivers no more in one piece
    std::vector<Frame> frames;
    frames.reserve(std::min(data.size(), readAtOnce) / shortest);
    feed(data, [&frames](Frame& frame) { frames.push_back(std::move(frame)); });
    return frames;
}

// Copies bytes only where a frame spans two chunks. Otherwise `data` is parsed where it is. The buffer
// grows before the copy: g++ 14 takes an insertion at its end for an overflow.
ByteView FrameParser::join(ByteView data) {
    if (buffer.empty()) return data;
    const std::size_t kept = buffer.size();
    buffer.resize(kept + data.size());
    std::ranges::copy(data, buffer.begin() + static_cast<std::ptrdiff_t>(kept));
    return buffer;
}

bool FrameParser::take(ByteView& rest) {
    using namespace FrameCodec;
    for (; !rest.empty(); rest = rest.subspan(1)) {
        if (rest.front() != head) {
            const auto* found = static_cast<const std::uint8_t*>(std::memchr(rest.data(), head, rest.size()));
            rest = rest.subspan(found ? static_cast<std::size_t>(found - rest.data()) : rest.size());
            if (rest.empty()) return false;
        }
        if (rest.size() < headerBytes) return false;
        const std::uint32_t words = wordAt(rest.data() + 8);
        if (words > maxWords) continue;
        const std::size_t payloadBytes = std::size_t{4} * words;
        if (rest.size() < headerBytes + payloadBytes + checksumBytes) return false;
        const ByteView payload = rest.subspan(headerBytes, payloadBytes);
        if (checksum(payload, words) != wordAt(payload.data() + payloadBytes)) continue;
        taken.product = rest[1];
        taken.address = rest[2];
        taken.fun = rest[3];
        taken.gnumber = rest[4];
        taken.gmember = rest[5];
        taken.payload.assign(payload.begin(), payload.end());
        rest = rest.subspan(headerBytes + payloadBytes + checksumBytes);
        return true;
    }
    return false;
}

void FrameParser::keep(ByteView rest) {
    const bool inBuffer = !buffer.empty();
    if (!inBuffer)
        buffer.assign(rest.begin(), rest.end());
    else
        buffer.erase(buffer.begin(), buffer.end() - static_cast<std::ptrdiff_t>(rest.size()));
}

}  // namespace Wendril
