#include "Wendril/client.hpp"

#include "tests/chain.hpp"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace Wendril {
namespace {

using namespace Tests;

// Several users of one chain at a time, each asking for a random thing after a random pause, on a
// line where everything goes wrong that can. Every answer is checked against what was asked.
struct Traffic {
    Traffic(std::uint64_t seed, const Simulator::LineOptions& options)
        : chain(options)
        , random(seed) {
        // No two modules of the chain hold the same, so an answer tells what it answers.
        for (std::size_t board = 0; board < options.boards; ++board)
            for (int band = 7; band <= 54; ++band)
                chain.line->board(board).store(static_cast<std::uint8_t>(band), expected(board + 1, band));
    }

    static ModuleValue expected(std::size_t address, int module) {
        return {PeqValue{.fc = static_cast<std::uint32_t>(1000 * address + static_cast<std::size_t>(module)),
                         .q = 1}};
    }

    std::uint64_t upTo(std::uint64_t most) { return random() % (most + 1); }

    void count(const std::string& outcome) { ++outcomes[outcome]; }

    Chain chain;
    std::mt19937_64 random;
    std::map<std::string, int> outcomes;
    int asked = 0;
    int wrong = 0;
};

// The error of a failed exchange is one of those that the bus promises.
std::string outcomeOf(const BusError& error) {
    switch (error.kind()) {
    case BusError::Case::timeout:
        return "timeout";
    case BusError::Case::rejected:
        return "rejected";
    case BusError::Case::closed:
        return "closed";
    }
    return "unknown";
}

Task<void> askOne(Traffic* t) {
    const auto address = static_cast<std::uint8_t>(1 + t->upTo(2));
    const int module = static_cast<int>(7 + t->upTo(47));
    const ModuleRef ref = K7Q::module(static_cast<std::uint8_t>(module)).value();
    const K7QClient client = t->chain.client;
    switch (t->upTo(4)) {
    case 0:
    case 1: {
        auto reading = client.read(address, ref);
        const ModuleValue value = co_await std::move(reading);
        t->wrong += value == Traffic::expected(address, module) ? 0 : 1;
        break;
    }
    case 2: {
        auto writing = client.write(address, ref, Traffic::expected(address, module));
        co_await std::move(writing);
        break;
    }
    case 3: {
        const auto levels = co_await client.meters(address);
        t->wrong += levels.size() == 6 ? 0 : 1;
        break;
    }
    default: {
        const DeviceInfo info = co_await client.info(address);
        t->wrong += info.address == address ? 0 : 1;
    }
    }
}

Task<void> user(Traffic* t, int requests) {
    for (int i = 0; i < requests; ++i) {
        ++t->asked;
        std::string outcome = "answered";
        try {
            co_await askOne(t);
        } catch (const BusError& error) {
            outcome = outcomeOf(error);
        }
        t->count(outcome);
        co_await sleepFor(std::chrono::milliseconds(t->upTo(100)));
    }
}

struct Run {
    std::vector<std::string> log;
    std::map<std::string, int> outcomes;

    bool operator==(const Run&) const = default;
};

Run run(std::uint64_t seed, Simulator::LineOptions options, bool cutMidway = false) {
    options.seed = seed;
    Traffic traffic(seed, options);
    std::vector<Spawned<void>> users;
    for (int i = 0; i < 4; ++i)
        users.push_back(spawn(traffic.chain.time.executor(), user(&traffic, 60)));
    if (cutMidway) {
        traffic.chain.time.advance(3s);
        traffic.chain.transport->cut(std::make_exception_ptr(TransportError::open("x", 5)));
    }
    traffic.chain.time.runUntilIdle();
    for (auto& each : users)
        each.get();

    int ended = 0;
    for (const auto& [outcome, count] : traffic.outcomes)
        ended += count;
    EXPECT_EQ(ended, traffic.asked) << seed;
    EXPECT_EQ(traffic.wrong, 0) << seed;
    EXPECT_EQ(traffic.chain.hostFaults(), std::vector<std::string>{}) << seed;
    EXPECT_EQ(traffic.outcomes.contains("closed"), cutMidway) << seed;
    return {traffic.chain.log, traffic.outcomes};
}

const Simulator::LineOptions everythingWrong{.pace = true,
                                             .turnaround = 2ms,
                                             .lose = 0.05,
                                             .corrupt = 0.05,
                                             .late = 0.05,
                                             .delay = 900ms,
                                             .duplicate = 0.05,
                                             .noise = 0.1,
                                             .refuse = 0.05};

TEST(SimulationTest, EveryRequestEndsOnceAndAnswersBelongToTheirQuestions) {
    std::map<std::string, int> seen;
    for (std::uint64_t seed = 1; seed <= 40; ++seed)
        for (const auto& [outcome, count] : run(seed, everythingWrong, seed % 4 == 0).outcomes)
            seen[outcome] += count;
    // The line was bad enough to bring about every ending.
    for (const char* outcome : {"answered", "timeout", "rejected", "closed"})
        EXPECT_GT(seen[outcome], 0) << outcome;
}

TEST(SimulationTest, TheSameSeedGivesTheSameLog) {
    EXPECT_EQ(run(11, everythingWrong), run(11, everythingWrong));
    EXPECT_NE(run(11, everythingWrong), run(12, everythingWrong));
}

TEST(SimulationTest, AGoodLineLosesNothing) {
    EXPECT_EQ(run(5, {.pace = true}).outcomes, (std::map<std::string, int>{{"answered", 240}}));
}

}  // namespace
}  // namespace Wendril
