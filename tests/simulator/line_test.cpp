#include "simulator/line.hpp"
#include "simulator/virtualtime.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <tuple>
#include <vector>

namespace Simulator {
namespace {

using namespace Wendril;
using namespace std::chrono_literals;

struct LineTest : testing::Test {
    void start(const LineOptions& options = {}) {
        line = std::make_shared<Line>(time.executor(), options);
        replies.clear();
        bytes.clear();
        waited = 0;
        pieces = 0;
        line->connect([this](ByteView data) {
            waited += std::chrono::duration<double, std::milli>(time.now() - sent).count();
            ++pieces;
            append(bytes, data);
            for (Frame& frame : parser.feed(data))
                replies.push_back(std::move(frame));
        });
    }

    void send(const Frame& frame) {
        line->receive(
            FrameCodec::encode(frame, false, frame.function() == Fun::netStart ? Bytes{0} : Bytes{}));
    }

    VirtualTime time;
    std::shared_ptr<Line> line;
    FrameParser parser;
    std::vector<Frame> replies;
    Bytes bytes;
    TimePoint sent{};   // when the host sent its request
    double waited = 0;  // ms from then to each piece that came, in all
    int pieces = 0;
};

Frame ping(int address) { return {9, static_cast<std::uint8_t>(address), Fun::linkStatus, Bytes(8)}; }
Frame gainWrite(const Bytes& value) {
    Bytes payload{0, 3, 0, 0};
    append(payload, value);
    return {9, 1, Fun::moduleSet, payload};
}

TEST_F(LineTest, EveryWayToBreakTheProtocolIsReported) {
    const auto encoded = [](const Frame& frame) { return FrameCodec::encode(frame, false, {}); };
    const Bytes good = encoded(ping(1));
    const auto changed = [&good](std::size_t at, std::uint8_t value) {
        Bytes bytes = good;
        bytes[at] = value;
        return bytes;
    };
    const std::pair<const char*, Bytes> cases[] = {
        {"wrong checksum", changed(23, 1)},
        {"reserved bytes not zero", changed(6, 1)},
        {"impossible word count", changed(8, 65)},
        {"bytes outside a frame", Bytes{1, 2, 3}},
        {"a frame broken off", encoded({255, 255, Fun::netStart, {}})},  // its stray byte is missing
        {"payload of 4 bytes instead of 8", encoded({9, 1, Fun::linkStatus, Bytes(4)})},
        {"ping payload not zero", encoded({9, 1, Fun::linkStatus, Bytes(8, 1)})},
        {"payload of 20 bytes instead of 12", encoded(gainWrite(Bytes(16)))},
        {"no module 99", encoded({9, 1, Fun::moduleGet, {0, 99, 0, 0}})},
        {"write to the meter VU/In0", encoded({9, 1, Fun::moduleSet, {0, 93, 0, 0}})},
        {"module header not zero", encoded({9, 1, Fun::moduleGet, {0, 93, 1, 0}})},
        {"no preset slot 32", encoded({9, 1, Fun::presetLoad, {32, 0, 0, 0}})},
        {"name field of a name request not spaces", encoded({9, 1, Fun::presetName, Bytes(24)})},
        {"not an address", encoded({255, 255, Fun::netAddressSet, {255, 0, 0, 0}})},
        {"addressing command not broadcast", encoded({9, 1, Fun::netAddressSet, {1, 0, 0, 0}})},
        {"no board of product 8", encoded({8, 1, Fun::linkStatus, Bytes(8)})},
        {"broadcast address with a product", encoded({9, 255, Fun::linkStatus, Bytes(8)})},
        {"function 5 is no broadcast", encoded({255, 255, Fun::moduleGet, {0, 93, 0, 0}})},
        {"function 54 is not for the host to send", encoded({9, 1, Fun::groupSet, {}})},
        {"group bytes not zero", encoded({9, 1, 2, 1, 0, Bytes(8)})},
    };
    for (const auto& [fault, sentBytes] : cases) {
        start();
        line->receive(sentBytes);
        time.advance(5s);     // the longest time-out of a host
        line->receive(good);  // shows a frame that is still open
        ASSERT_EQ(line->summary().faults.size(), 1U) << fault;
        EXPECT_TRUE(line->summary().faults[0].starts_with(fault)) << line->summary().faults[0];
        EXPECT_FALSE(line->summary().requests.empty()) << fault;
    }
}

TEST_F(LineTest, ARequestBeforeTheReplyOrTheTimeoutIsAFault) {
    for (const auto& [address, pause, faults] :
         {std::tuple{1, 9ms, 1U}, {1, 11ms, 0U}, {7, 199ms, 1U}, {7, 201ms, 0U}}) {  // nobody is 7
        start({.boards = 1, .turnaround = 10ms});
        send(ping(address));
        time.advance(pause);
        send(ping(address));
        EXPECT_EQ(line->summary().faults.size(), faults) << address << " after " << pause.count() << " ms";
    }
}

TEST_F(LineTest, RepliesAreAsSlowAndAsFaultyAsAskedFor) {
    constexpr double wireTime = 24 * 10 / 115.2;  // ms of a ping or its reply
    const struct {
        const char* what;
        LineOptions options;
        double repliesPerPing;
        double bytesPerPing;
        double meanWait;  // ms
    } cases[] = {
        {"paced", {.boards = 1, .pace = true, .turnaround = 3ms}, 1, 24, 2 * wireTime + 3},
        {"lost", {.boards = 1, .lose = 0.25}, 0.75, 18, 0},
        // A flipped bit in the header's group and reserved bytes goes unnoticed.
        {"corrupt", {.boards = 1, .corrupt = 1}, 0.34, 24, 0},
        {"twice", {.boards = 1, .duplicate = 0.5}, 1.5, 36, wireTime / 3},
        {"noise", {.boards = 1, .noise = 1}, 1, 24 + 6.5, 0},
        {"late", {.boards = 1, .late = 0.5, .delay = 100ms}, 1, 24, 50},
    };
    constexpr int pings = 2000;
    for (const auto& c : cases) {
        start(c.options);
        for (int i = 0; i < pings; ++i) {
            sent = time.now();
            send(ping(1));
            time.advance(1s);
        }
        EXPECT_NEAR(double(replies.size()) / pings, c.repliesPerPing, 0.06) << c.what;
        EXPECT_NEAR(double(bytes.size()) / pings, c.bytesPerPing, 0.5) << c.what;
        EXPECT_NEAR(waited / pieces, c.meanWait, c.options.late > 0 ? 3 : 0.1) << c.what;
    }
}

TEST_F(LineTest, AWriteIsStoredByteForByteOrRefused) {
    for (const double refuse : {0, 1}) {
        start({.refuse = refuse});
        const Bytes odd{1, 2, 3, 4, 2, 0x80, 0x7F, 0xFF};
        send(gainWrite(odd));
        EXPECT_EQ(replies.at(0).payload[0] == 0, refuse == 0);
        EXPECT_EQ(line->board(0).stored(3) == odd, refuse == 0);
    }
}

TEST_F(LineTest, TheMusicMovesAndIsTheSameForTheSameSeed) {
    const auto play = [this](const LineOptions& options, std::uint8_t board) {
        start(options);
        std::vector<float> piece;
        for (int reading = 0; reading < 333; ++reading) {
            send({9, board, Fun::moduleGet, {0, K7Q::meterIndex, 0, 0}});
            piece.push_back(f32(replies.back().payload, 4));
            time.advance(60ms);
        }
        return piece;
    };
    const auto piece = play({.seed = 4}, 2);
    const auto [low, high] = std::ranges::minmax(piece);
    EXPECT_TRUE(high - low > 6 && high < 6 && low > -60) << low << " to " << high;
    EXPECT_EQ(play({.seed = 4}, 2), piece);
    EXPECT_NE(play({.seed = 5}, 2), piece);
    EXPECT_NE(play({.seed = 4}, 1), piece);
    EXPECT_EQ(play({.still = true, .seed = 4}, 2), std::vector<float>(piece.size(), piece.front()));
}

// Both requests came while the line's thread could not run.
TEST_F(LineTest, ALineThatReadsLateDoesNotBlameTheHost) {
    for (const bool isLate : {false, true}) {
        start({.turnaround = 20ms, .look = 10ms});
        line->executor->post([&] {
            if (isLate) time.block(300ms);
            send(ping(1));
            send(ping(1));
        });
        time.advance(1s);
        EXPECT_EQ(line->summary().faults.size(), isLate ? 0U : 1U);
        line->disconnect();
    }
}

}  // namespace
}  // namespace Simulator
