#include "simulator/line.hpp"
#include "simulator/virtualtime.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace Simulator {
namespace {

using namespace Wendril;
using namespace std::chrono_literals;

struct LineTest : testing::Test {
    void start(const LineOptions& options = {}) {
        line = std::make_shared<Line>(time.executor(), options);
        line->connect([this](ByteView bytes) {
            arrivals.push_back(time.elapsed());
            for (Frame& frame : parser.feed(bytes))
                replies.push_back(std::move(frame));
        });
    }

    void send(const Frame& frame) {
        line->receive(
            FrameCodec::encode(frame, false, frame.function() == Fun::netStart ? Bytes{0} : Bytes{}));
    }

    std::size_t faults() const { return line->summary().faults.size(); }

    VirtualTime time;
    std::shared_ptr<Line> line;
    FrameParser parser;
    std::vector<Frame> replies;
    std::vector<Duration> arrivals;
};

Frame ping(std::uint8_t address) { return {9, address, Fun::linkStatus, Bytes(8)}; }
Frame gainWrite(Bytes value) {
    Bytes payload{0, 3, 0, 0};
    payload.insert(payload.end(), value.begin(), value.end());
    return {9, 1, Fun::moduleSet, std::move(payload)};
}

TEST_F(LineTest, EveryWayToBreakTheProtocolIsReported) {
    const Bytes good = FrameCodec::encode(ping(1), false, {});
    Bytes badChecksum = good;
    badChecksum.back() ^= 1;
    Bytes reserved = good;
    reserved[6] = 1;
    Bytes longCount = good;
    longCount[8] = 65;
    Bytes noiseBefore = good;
    noiseBefore.insert(noiseBefore.begin(), {1, 2, 3});
    const auto encoded = [](const Frame& frame) { return FrameCodec::encode(frame, false, {}); };
    const struct {
        const char* what;
        Bytes bytes;
    } cases[] = {
        {"wrong checksum", badChecksum},
        {"reserved bytes", reserved},
        {"word count", longCount},
        {"outside a frame", noiseBefore},
        {"addressing without its stray byte", encoded({255, 255, Fun::netStart, {}})},
        {"short ping", encoded({9, 1, Fun::linkStatus, Bytes(4)})},
        {"ping with content", encoded({9, 1, Fun::linkStatus, Bytes(8, 1)})},
        {"wrong length for the module", encoded(gainWrite(Bytes(16)))},
        {"no such module", encoded({9, 1, Fun::moduleGet, {0, 99, 0, 0}})},
        {"write to a meter", encoded({9, 1, Fun::moduleSet, {0, 93, 0, 0}})},
        {"module header", encoded({9, 1, Fun::moduleGet, {0, 93, 1, 0}})},
        {"no preset slot", encoded({9, 1, Fun::presetLoad, {32, 0, 0, 0}})},
        {"name request without spaces", encoded({9, 1, Fun::presetName, Bytes(24)})},
        {"address 255", encoded({255, 255, Fun::netAddressSet, {255, 0, 0, 0}})},
        {"another product", encoded({8, 1, Fun::linkStatus, Bytes(8)})},
        {"a broadcast read", encoded({255, 255, Fun::moduleGet, {0, 93, 0, 0}})},
        {"a command that hosts do not send", encoded({9, 1, Fun::groupSet, {}})},
        {"an unknown command", encoded({9, 1, 200, 0, 0, {}})},
        {"a group", encoded({9, 1, 2, 1, 0, Bytes(8)})},
    };
    for (const auto& [what, bytes] : cases) {
        start();
        line->receive(bytes);
        time.advance(200ms);
        line->receive(good);  // a frame still open shows by now
        EXPECT_GE(faults(), 1U) << what;
        EXPECT_FALSE(line->summary().requests.empty()) << what;
    }
}

TEST_F(LineTest, ARequestBeforeTheReplyOrTheTimeoutIsAFault) {
    start({.boards = 1, .turnaround = 10ms});
    send(ping(1));
    time.advance(5ms);
    send(ping(1));
    EXPECT_EQ(faults(), 1U);
    time.advance(100ms);
    send(ping(1));  // both were answered
    time.advance(100ms);
    send(ping(7));  // nobody there: the host waits 200 ms
    time.advance(199ms);
    send(ping(7));
    EXPECT_EQ(faults(), 2U);
    time.advance(200ms);
    send(ping(7));
    EXPECT_EQ(faults(), 2U);
}

TEST_F(LineTest, APacedLineTakesTheTimeOfItsBytes) {
    start({.boards = 1, .pace = true, .turnaround = 3ms});
    send(ping(1));
    time.runUntilIdle();
    ASSERT_EQ(arrivals.size(), 1U);
    const double ms = std::chrono::duration<double, std::milli>(arrivals[0]).count();
    EXPECT_NEAR(ms, (24 + 24) * 10 / 115.2 + 3, 1e-3);
}

TEST_F(LineTest, FaultsOfTheLineComeAsOftenAsAskedFor) {
    const struct {
        const char* what;
        LineOptions options;
        double repliesPerPing;
    } cases[] = {
        {"lost", {.boards = 1, .lose = 0.25}, 0.75},
        {"corrupt", {.boards = 1, .corrupt = 1}, 0.34},  // flips in header bytes go unnoticed
        {"twice", {.boards = 1, .duplicate = 0.5}, 1.5},
        {"noise", {.boards = 1, .noise = 1}, 1.0},
        {"late", {.boards = 1, .late = 0.5, .delay = 100ms}, 1.0},
    };
    constexpr int pings = 2000;
    for (const auto& [what, options, expected] : cases) {
        start(options);
        replies.clear();
        for (int i = 0; i < pings; ++i) {
            send(ping(1));
            time.advance(1s);
        }
        EXPECT_NEAR(static_cast<double>(replies.size()) / pings, expected, 0.06) << what;
    }
}

TEST_F(LineTest, ARefusedWriteChangesNothingAndADeadBoardIsSilent) {
    start({.boards = 2, .refuse = 1});
    const ModuleValue before = line->board(0).value(3);
    send(gainWrite(Bytes{0, 0, 0, 0x40, 1, 1, 0, 0}));
    ASSERT_EQ(replies.size(), 1U);
    EXPECT_NE(replies[0].payload[0], 0);
    EXPECT_EQ(line->board(0).value(3), before);
    line->mute(1);
    send(ping(2));
    EXPECT_EQ(replies.size(), 1U);
}

TEST_F(LineTest, ValuesAreStoredByteForByte) {
    start();
    const Bytes odd{1, 2, 3, 4, 2, 0x80, 0x7F, 0xFF};
    send(gainWrite(odd));
    EXPECT_EQ(line->board(0).stored(3), odd);
    send({9, 1, Fun::moduleGet, {0, 3, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0}});
    EXPECT_EQ(Bytes(replies.back().payload.begin() + 4, replies.back().payload.end()), odd);
}

TEST_F(LineTest, TheMusicIsTheSameForTheSameSeedAndMoves) {
    start({.seed = 4});
    const auto other = std::make_shared<Line>(time.executor(), LineOptions{.seed = 4});
    float low = 0;
    float high = -200;
    for (int reading = 0; reading < 333; ++reading) {
        const double seconds = 0.06 * reading;
        const auto levels = line->board(1).levels(seconds);
        EXPECT_EQ(levels, other->board(1).levels(seconds));
        low = std::min(low, levels[0]);
        high = std::max(high, levels[0]);
    }
    EXPECT_GT(high - low, 6);
    EXPECT_LT(high, 6);
    EXPECT_GT(low, -60);
    EXPECT_NE(line->board(0).levels(1), line->board(1).levels(1));
}

}  // namespace
}  // namespace Simulator
