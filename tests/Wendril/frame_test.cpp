#include "Wendril/frame.hpp"

#include "tests/Wendril/scripted.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace Wendril {
namespace {

using namespace Tests;

Frame frameWith(std::size_t words, std::uint8_t address = 1) {
    Bytes payload(4 * words);
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<std::uint8_t>(31 * i + address);
    return {9, address, Fun::moduleGet, std::move(payload)};
}

Bytes operator+(Bytes front, const Bytes& back) {
    append(front, back);
    return front;
}

// A header that announces a payload of `words`.
Bytes headFor(std::uint32_t words) {
    Bytes head{0x55, 9, 1, 5, 0, 0, 0, 0};
    appendU32(head, words);
    return head;
}

TEST(FrameCodecTest, FramesHaveTheBytesOfTheProtocol) {
    EXPECT_EQ(hex(wire({9, 1, Fun::linkStatus, Bytes(8)})),
              "55 09 01 02 00 00 00 00 02 00 00 00 00 00 00 00 00 00 00 00 FE FF FF FF");
    EXPECT_EQ(hex(wire({9, 3, Fun::moduleGet, {0, 4, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0}})),
              "55 09 03 05 00 00 00 00 03 00 00 00 00 04 00 00 00 00 00 00 00 01 00 00 FD FA FF FF");
    EXPECT_EQ(hex(FrameCodec::encode({0xFF, 0xFF, Fun::netStart, {}}, false, Bytes{0})),
              "55 FF FF 31 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(wire({9, 1, 200, 7, 8, {}})), "55 09 01 C8 07 08 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(FrameCodec::encode({9, 1, Fun::linkStatus, Bytes(8)}, true, {})),
              "55 09 01 02 00 00 00 00 02 00 00 00 FE FF FF FF");
    EXPECT_EQ(FrameCodec::checksum(Bytes{1, 0, 0, 0, 2}, 3), 0U - (3 + 1 + 2));
    EXPECT_EQ(FrameCodec::checksum(Bytes(8, 0xFF), 2), 0U);
}

TEST(FrameTest, OnlyTheSixteenCodesAreFunctions) {
    const std::set<int> codes{1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 49, 50, 52, 54};
    for (int raw = 0; raw < 256; ++raw)
        EXPECT_EQ(funFromRaw(static_cast<std::uint8_t>(raw)).has_value(), codes.contains(raw)) << raw;
    EXPECT_FALSE(Frame(9, 1, 201, 0, 0, {}).function().has_value());
}

TEST(PayloadTest, FieldsPastTheEndReadAsZero) {
    const Bytes bytes{0x00, 0x00, 0x80, 0x3F, 0x12};
    EXPECT_EQ(f32(bytes, 0), 1.0F);
    EXPECT_EQ(u16(bytes, 4), 0x12);
    EXPECT_EQ(u32(bytes, 3), 0x0000123FU);
    EXPECT_EQ(u8(bytes, 5), 0);
    EXPECT_EQ(f32(bytes, 100), 0.0F);
    EXPECT_EQ(hex({}), "");
}

TEST(FrameParserTest, FramesAreFoundAmongWhateverElseArrivesHoweverItIsCut) {
    const Bytes noise{1, 2, 3};
    const Frame a = frameWith(2);
    const Frame b = frameWith(64, 2);
    Bytes corrupt = wire(frameWith(20) /* room for the frame inside */);
    std::ranges::copy(wire(a), corrupt.begin() + 40);
    Bytes reserved = wire({9, 1, 201, 3, 4, {}});
    reserved[6] = 0xAB;
    const struct {
        const char* what;
        Bytes stream;
        std::vector<Frame> frames;
        Bytes pending;
    } cases[] = {
        {"noise", noise + wire(a) + noise + wire(b) + noise + Bytes{0x55, 9, 9}, {a, b}, {0x55, 9, 9}},
        {"no head", Bytes(300, 0xAA), {}, {}},
        {"reserved bytes, unknown function", reserved, {Frame(9, 1, 201, 3, 4, {})}, {}},
        {"a count of 65", headFor(65) + wire(a), {a}, {}},
        {"a count whose bytes wrap", headFor(0xFFFFFFFC) + wire(a), {a}, {}},
        {"a frame inside a corrupt one", corrupt + wire(b), {a, b}, {}},
    };
    for (const auto& [what, stream, frames, pending] : cases) {
        for (std::size_t piece = 1; piece <= stream.size(); ++piece) {
            FrameParser parser;
            std::vector<Frame> found;
            for (ByteView rest = stream; !rest.empty();) {
                const std::size_t bytes = std::min(piece, rest.size());
                std::ranges::move(parser.feed(rest.first(bytes)), std::back_inserter(found));
                rest = rest.subspan(bytes);
            }
            ASSERT_EQ(found, frames) << what << " in pieces of " << piece;
            ASSERT_EQ(parser.pending(), pending) << what << " in pieces of " << piece;
            parser.reset();
            EXPECT_TRUE(parser.pending().empty());
        }
    }
}

}  // namespace
}  // namespace Wendril
