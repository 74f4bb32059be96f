#include "tests/chain.hpp"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace Wendril {
namespace {

using namespace Tests;

// What a band of a speaker holds: no two of the chain hold the same, so an answer tells what it answers.
ModuleValue held(std::size_t address, std::size_t number) {
    return {PeqValue{.fc = static_cast<std::uint32_t>(1000 * address + number), .q = 1}};
}

// Several users of one chain at a time, each asking for a random thing after a random pause.
struct Traffic {
    Traffic(std::uint64_t seed, const Simulator::LineOptions& options)
        : chain(options)
        , random(seed) {
        for (std::size_t board = 0; board < options.boards; ++board)
            for (std::uint8_t band = 7; band <= 54; ++band)
                chain.line->board(board).store(band, held(board + 1, band));
    }

    std::uint64_t upTo(std::uint64_t most) { return random() % (most + 1); }

    Chain chain;
    std::mt19937_64 random;
    std::map<std::string, int> outcomes;
    int wrong = 0;
};

// Whether the answer belongs to the question.
Task<bool> askOne(Traffic* t) {
    const auto address = static_cast<std::uint8_t>(1 + t->upTo(2));
    const auto number = static_cast<std::uint8_t>(7 + t->upTo(47));
    const ModuleRef ref = K7Q::module(number).value();
    const K7QClient client = t->chain.client;
    switch (t->upTo(3)) {
    case 0:
        co_return co_await client.read(address, ref) == held(address, number);
    case 1:
        co_await client.write(address, ref, held(address, number));
        co_return true;
    case 2:
        co_return (co_await client.meters(address)).size() == 6;
    default:
        co_return (co_await client.info(address)).address == address;
    }
}

Task<void> user(Traffic* t) {
    for (int i = 0; i < 60; ++i) {
        std::string outcome = "answered";
        try {
            if (!co_await askOne(t)) ++t->wrong;
        } catch (const BusError& error) {
            outcome = std::string(error.what()).substr(0, 12);
        }
        ++t->outcomes[outcome];
        co_await sleepFor(std::chrono::milliseconds(t->upTo(100)));
    }
}

using Outcomes = std::map<std::string, int>;

Outcomes run(std::uint64_t seed, Simulator::LineOptions options, bool cutMidway = false) {
    options.seed = seed;
    Traffic traffic(seed, options);
    for (int i = 0; i < 4; ++i)
        spawn(traffic.chain.time.executor(), user(&traffic));
    if (cutMidway) {
        traffic.chain.time.advance(3s);
        traffic.chain.transport->cut(std::make_exception_ptr(TransportError::open("x", 5)));
    }
    traffic.chain.time.runUntilIdle();
    int ended = 0;
    for (const auto& [outcome, count] : traffic.outcomes)
        ended += count;
    EXPECT_EQ(ended, 4 * 60) << seed;
    EXPECT_EQ(traffic.wrong, 0) << seed;
    EXPECT_EQ(traffic.chain.hostFaults(), std::vector<std::string>{}) << seed;
    return traffic.outcomes;
}

TEST(SimulationTest, OnABadLineEveryRequestEndsOnceAndAnswersBelongToTheirQuestions) {
    const Simulator::LineOptions everythingWrong{.pace = true,
                                                 .turnaround = 2ms,
                                                 .lose = 0.05,
                                                 .corrupt = 0.05,
                                                 .late = 0.05,
                                                 .delay = 900ms,
                                                 .duplicate = 0.05,
                                                 .noise = 0.1,
                                                 .refuse = 0.05};
    std::set<std::string> seen;
    for (std::uint64_t seed = 1; seed <= 40; ++seed)
        for (const auto& [outcome, count] : run(seed, everythingWrong, seed % 4 == 0))
            seen.insert(outcome);
    const std::set<std::string> every{"answered", "A caixa não", "A caixa recu", "Conexão fec"};
    EXPECT_EQ(seen, every);
    EXPECT_EQ(run(5, {.pace = true}), (Outcomes{{"answered", 240}}));
}

}  // namespace
}  // namespace Wendril
