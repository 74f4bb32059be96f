#include "Wendril/frame.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>

namespace Wendril {
namespace {

Frame frameWith(std::size_t words, std::uint8_t address = 1) {
    Bytes payload(4 * words);
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<std::uint8_t>(31 * i + address);
    return {9, address, Fun::moduleGet, std::move(payload)};
}

Bytes wire(const Frame& frame) { return FrameCodec::encode(frame, false, {}); }

Bytes operator+(Bytes front, const Bytes& back) {
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

TEST(FrameCodecTest, FramesHaveTheBytesOfTheProtocol) {
    EXPECT_EQ(hex(wire(Frame(9, 1, Fun::linkStatus, Bytes(8)))),
              "55 09 01 02 00 00 00 00 02 00 00 00 00 00 00 00 00 00 00 00 FE FF FF FF");
    EXPECT_EQ(hex(wire(Frame(9, 3, Fun::moduleGet, {0, 4, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0}))),
              "55 09 03 05 00 00 00 00 03 00 00 00 00 04 00 00 00 00 00 00 00 01 00 00 FD FA FF FF");
    EXPECT_EQ(hex(FrameCodec::encode(Frame(0xFF, 0xFF, Fun::netStart, {}), false, Bytes{0})),
              "55 FF FF 31 00 00 00 00 00 00 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(wire(Frame(9, 1, 200, 7, 8, {}))), "55 09 01 C8 07 08 00 00 00 00 00 00 00 00 00 00");
}

TEST(FrameCodecTest, CountAndChecksumDescribeAPayloadThatIsLeftOut) {
    const Frame frame = frameWith(3);
    const Bytes whole = wire(frame);
    const Bytes bare = FrameCodec::encode(frame, true, {});
    ASSERT_EQ(bare.size(), 16U);
    EXPECT_EQ(u32(bare, 8), 3U);
    EXPECT_EQ(u32(bare, 12), u32(whole, 24));
}

TEST(FrameCodecTest, ChecksumCountsMissingBytesAsZeroAndWraps) {
    EXPECT_EQ(FrameCodec::checksum({}, 0), 0U);
    EXPECT_EQ(FrameCodec::checksum(Bytes{1, 0, 0, 0, 2}, 3), 0U - (3 + 1 + 2));
    EXPECT_EQ(FrameCodec::checksum(Bytes(8, 0xFF), 2), 0U);
}

TEST(PayloadTest, FieldsPastTheEndReadAsZero) {
    const Bytes bytes{0x00, 0x00, 0x80, 0x3F, 0x12};
    EXPECT_EQ(f32(bytes, 0), 1.0F);
    EXPECT_EQ(u16(bytes, 4), 0x12);
    EXPECT_EQ(u32(bytes, 3), 0x0000123FU);
    EXPECT_EQ(u8(bytes, 5), 0);
    EXPECT_EQ(f32(bytes, 100), 0.0F);
    EXPECT_EQ(hex({}), "");
    EXPECT_EQ(hex(Bytes{0x55, 0x0A}), "55 0A");
}

TEST(FrameParserTest, AFrameComesOutWithItsLastByteHoweverItIsSplit) {
    for (const std::size_t words : {0U, 1U, 64U}) {
        const Frame frame = frameWith(words);
        const Bytes bytes = wire(frame);
        for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
            FrameParser parser;
            auto frames = parser.feed(ByteView(bytes).first(cut));
            ASSERT_EQ(frames.size(), cut == bytes.size() ? 1U : 0U) << cut;
            if (cut < bytes.size()) frames = parser.feed(ByteView(bytes).subspan(cut));
            ASSERT_EQ(frames, std::vector{frame}) << cut;
            ASSERT_TRUE(parser.pending().empty());
        }
    }
}

TEST(FrameParserTest, NoiseIsDroppedAndAPartialFrameKept) {
    FrameParser parser;
    const Bytes noise{1, 2, 3};
    EXPECT_EQ(parser.feed(noise + wire(frameWith(2)) + noise + wire(frameWith(1)) + Bytes{7, 0x55, 9, 9}),
              (std::vector{frameWith(2), frameWith(1)}));
    EXPECT_EQ(parser.pending(), (Bytes{0x55, 9, 9}));
    parser.reset();
    EXPECT_TRUE(parser.feed(Bytes(300, 0xAA)).empty());
    EXPECT_TRUE(parser.pending().empty());
}

TEST(FrameParserTest, AnImpossibleCountCostsOneByteAndNotTheFrameBehindIt) {
    for (const std::uint32_t count : {65U, 0x80000000U, 0xFFFFFFFFU, 0xFFFFFFFCU}) {
        Bytes head{0x55, 9, 1, 5, 0, 0, 0, 0};
        appendU32(head, count);
        FrameParser parser;
        EXPECT_EQ(parser.feed(head + wire(frameWith(2))), std::vector{frameWith(2)}) << count;
    }
    FrameParser parser;
    EXPECT_EQ(parser.feed(wire(frameWith(64))), std::vector{frameWith(64)});
}

// The outer frame announces 64 words and is corrupt; a whole frame lies inside its payload.
TEST(FrameParserTest, AFrameInsideACorruptOneIsFound) {
    const Bytes inner = wire(frameWith(4, 2));
    Bytes payload(256, 0x11);
    std::copy(inner.begin(), inner.end(), payload.begin() + 40);
    Bytes outer = wire(Frame(9, 1, Fun::moduleGet, payload));
    outer.back() ^= 1;
    FrameParser parser;
    EXPECT_EQ(parser.feed(outer + wire(frameWith(1))), (std::vector{frameWith(4, 2), frameWith(1)}));
}

TEST(FrameParserTest, ReservedBytesAndUnknownFunctionsAreAccepted) {
    Bytes bytes = wire(Frame(9, 1, 201, 3, 4, {}));
    bytes[6] = 0xAB;
    FrameParser parser;
    const auto frames = parser.feed(bytes);
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_EQ(frames[0], Frame(9, 1, 201, 3, 4, {}));
    EXPECT_FALSE(frames[0].function().has_value());
    for (const int unknown : {0, 4, 14, 48, 51, 53, 55, 255})
        EXPECT_FALSE(funFromRaw(static_cast<std::uint8_t>(unknown)).has_value()) << unknown;
}

// Whatever the stream and its cuts, the parser finds the same frames and never holds more than
// what the frame in hand can still need.
TEST(FrameParserTest, CutsInTheStreamChangeNothing) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        Bytes stream;
        for (int piece = 0; piece < 20; ++piece) {
            Bytes bytes = wire(frameWith(random() % 65, static_cast<std::uint8_t>(random())));
            if (random() % 3 == 0)
                bytes[random() % bytes.size()] ^= static_cast<std::uint8_t>(1U << random() % 8);
            if (random() % 4 == 0) bytes.resize(random() % bytes.size());
            stream = std::move(stream) + Bytes(random() % 5, random() % 2 ? 0x55 : 0x00) + bytes;
        }
        FrameParser whole;
        const auto expected = whole.feed(stream);
        FrameParser parts;
        std::vector<Frame> found;
        for (std::size_t at = 0; at < stream.size();) {
            const std::size_t size = std::min<std::size_t>(1 + random() % 40, stream.size() - at);
            for (Frame& frame : parts.feed(ByteView(stream).subspan(at, size)))
                found.push_back(std::move(frame));
            at += size;
            ASSERT_LT(parts.pending().size(), 16U + 256U);
            ASSERT_TRUE(parts.pending().empty() || parts.pending()[0] == 0x55);
        }
        ASSERT_EQ(found, expected) << round;
        ASSERT_EQ(parts.pending(), whole.pending());
    }
}

}  // namespace
}  // namespace Wendril
