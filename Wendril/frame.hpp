#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Wendril {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

/// Function codes of the speaker protocol. A board answers a request with the same code, or with
/// `ack`, whose payload is a status byte (0 = accepted) and the code that it acknowledges.
enum class Fun : std::uint8_t {
    ack = 1,
    linkStatus = 2,
    devInfo = 3,
    moduleGet = 5,
    moduleSet = 6,
    presetInfoGet = 7,
    presetInfoSet = 8,
    presetName = 9,
    presetSave = 10,
    presetLoad = 11,
    presetDelete = 12,
    presetWrite = 13,
    netStart = 49,
    netAddressSet = 50,
    modelSet = 52,
    groupSet = 54,
};

/// The function code of that raw value; none for a byte that is no known code.
std::optional<Fun> funFromRaw(std::uint8_t raw);

/// One protocol frame. The payload is a whole number of 32-bit words, 256 bytes at most when received.
struct Frame {
    std::uint8_t product = 0;
    std::uint8_t address = 0;
    std::uint8_t fun = 0;
    std::uint8_t gnumber = 0;
    std::uint8_t gmember = 0;
    Bytes payload;

    Frame() = default;
    Frame(std::uint8_t product, std::uint8_t address, Fun fun, Bytes payload);
    Frame(std::uint8_t product, std::uint8_t address, std::uint8_t fun, std::uint8_t gnumber,
          std::uint8_t gmember, Bytes payload);

    /// Absent when `fun` is no known code; such a frame is still received and logged.
    std::optional<Fun> function() const { return funFromRaw(fun); }

    bool operator==(const Frame&) const = default;
};

/// Readers of little-endian payload fields. A byte past the end counts as 0.
std::uint8_t u8(ByteView bytes, std::size_t i);
std::uint16_t u16(ByteView bytes, std::size_t i);
std::uint32_t u32(ByteView bytes, std::size_t i);
float f32(ByteView bytes, std::size_t i);

/// Writers of the same fields, at the end of `bytes`.
void appendU32(Bytes& bytes, std::uint32_t value);
void appendF32(Bytes& bytes, float value);
void append(Bytes& bytes, ByteView more);

/// Upper-case hexadecimal bytes joined by single spaces: "55 0A".
std::string hex(ByteView bytes);

namespace FrameCodec {

constexpr std::uint8_t head = 0x55;
constexpr std::size_t headerBytes = 12;  // up to and including the word count
constexpr std::size_t checksumBytes = 4;
constexpr std::uint32_t maxWords = 64;  // longest payload that a receiver accepts

/// The bytes of `frame` on the wire. Count and checksum describe the payload also when
/// `omitPayload` leaves its bytes out; `stray` bytes stand before the checksum and are covered by
/// neither.
Bytes encode(const Frame& frame, bool omitPayload, ByteView stray);

/// 0 − (words + the first `words` little-endian words of `data`), modulo 2^32.
std::uint32_t checksum(ByteView data, std::size_t words);

}  // namespace FrameCodec

/// Cuts a received byte stream into frames. One parser serves one stream, on one thread at a time. Noise,
/// impossible lengths and bad checksums are dropped silently: one byte, and then up to the next head.
class FrameParser {
public:
    /// Every frame that `data` completes, in stream order.
    std::vector<Frame> feed(ByteView data);

    /// The same without a list: calls `sink` with each frame, a `Frame&` that it may move from.
    template <class Sink>
    requires std::is_invocable_v<Sink&, Frame&>
    void feed(ByteView data, Sink sink) {
        ByteView rest = join(data);
        while (take(rest))
            sink(taken);
        keep(rest);
    }

    /// Gives up the incomplete frame that is pending, and looks for frames behind its head. Nothing is
    /// pending then. For a frame whose rest does not come: its word count may be damaged.
    template <class Sink>
    void giveUp(Sink sink) {
        while (!buffer.empty()) {
            const Bytes rest = std::exchange(buffer, {});
            feed(ByteView(rest).subspan(1), sink);
        }
    }

    /// Forgets an incomplete frame.
    void reset() { buffer.clear(); }

    /// Received bytes that are not a whole frame yet: empty, or beginning with a head and shorter than
    /// the frame that this head announces.
    const Bytes& pending() const { return buffer; }

private:
    ByteView join(ByteView data);
    bool take(ByteView& rest);
    void keep(ByteView rest);

    Bytes buffer;
    Frame taken;
};

}  // namespace Wendril
