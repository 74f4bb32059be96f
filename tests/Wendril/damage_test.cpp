// A reply that arrives damaged costs the attempt that it answers, and nothing of those that follow.
#include "tests/chain.hpp"

#include <gtest/gtest.h>

#include <functional>

namespace Wendril {
namespace {

using namespace Tests;

/// The memory transport, with one change made to what it delivers first.
class DamagingTransport final : public Transport {
public:
    explicit DamagingTransport(std::shared_ptr<Simulator::Line> line)
        : memory(std::move(line)) {}

    std::string name() const override { return memory.name(); }
    void open(OnData onData, OnClose onClose) override {
        this->onData = std::move(onData);
        memory.open(
            [this](ByteView data) {
                Bytes bytes(data.begin(), data.end());
                if (damage) std::exchange(damage, nullptr)(bytes);
                this->onData(bytes);
            },
            std::move(onClose));
    }
    void write(ByteView data) override { memory.write(data); }
    void close() override { memory.close(); }
    std::shared_ptr<Executor> queue() const override { return memory.queue(); }

    std::function<void(Bytes&)> damage;
    OnData onData;

private:
    Simulator::MemoryTransport memory;
};

struct DamagedChain {
    Simulator::VirtualTime time;
    std::shared_ptr<Simulator::Line> line = std::make_shared<Simulator::Line>(
        time.executor(), Simulator::LineOptions{.boards = 2, .turnaround = 2ms});
    std::shared_ptr<DamagingTransport> transport = std::make_shared<DamagingTransport>(line);
    std::shared_ptr<Bus> bus = std::make_shared<Bus>(transport);
    K7QClient client{bus, K7Q::productID};

    DamagedChain() { time.run(bus->open()); }
};

using Operation = std::function<void(DamagedChain&)>;

// With its time-out, and whether it is sent again.
const struct {
    const char* name;
    Operation run;
    Duration timeout;
    bool resends;
} operations[] = {
    {"ping",
     [](DamagedChain& c) {
         if (!c.time.run(c.client.ping(1, 200ms))) throw BusError::timeout(2);
     },
     200ms, false},
    {"meters", [](DamagedChain& c) { c.time.run(c.client.meters(1)); }, 300ms, false},
    {"info", [](DamagedChain& c) { c.time.run(c.client.info(1)); }, 400ms, true},
    {"read", [](DamagedChain& c) { c.time.run(c.client.read(1, K7Q::module(7).value())); }, 750ms, true},
    {"write",
     [](DamagedChain& c) { c.time.run(c.client.write(1, K7Q::module(71).value(), ModuleValue{true})); },
     750ms, true},
    {"preset list", [](DamagedChain& c) { c.time.run(c.client.presetInfo(1)); }, 750ms, true},
    {"save", [](DamagedChain& c) { c.time.run(c.client.savePreset(1, 3, "Show")); }, 3s, true},
};

// Runs the operation twice, with that damage to the first reply, and expects no more than one lost attempt.
template <class Damage>
void expectOneLostAttempt(Damage damage, const std::string& what) {
    for (const auto& [name, run, timeout, resends] : operations) {
        DamagedChain chain;
        chain.transport->damage = damage;
        const std::string first = failureOf([&, &run = run] { run(chain); });
        EXPECT_TRUE(first.empty() || !resends) << name << ", " << what << ": " << first;
        EXPECT_LE(chain.time.elapsed(), timeout + 5ms) << name << ", " << what;
        EXPECT_EQ(failureOf([&, &run = run] { run(chain); }), "") << name << " after " << what;
    }
}

TEST(DamageTest, AFlippedBitOfAReplyCostsOneAttempt) {
    constexpr std::size_t longestReply = 52;
    for (std::size_t bit = 0; bit < 8 * longestReply; ++bit)
        expectOneLostAttempt(
            [bit](Bytes& reply) {
                if (bit / 8 < reply.size()) reply[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8);
            },
            "bit " + std::to_string(bit));
}

TEST(DamageTest, NoiseBeforeAReplyThatLooksLikeAHeadDelaysIt) {
    expectOneLostAttempt(
        [](Bytes& reply) {
            const Bytes head{0x55, 9, 1, 5, 0, 0, 0, 0, 64, 0, 0, 0};
            reply.insert(reply.begin(), head.begin(), head.end());
        },
        "the head of a frame of 64 words");
}

// The first part comes right before the time-out, the rest during the resend.
TEST(DamageTest, AReplyThatStraddlesTheTimeoutCompletesTheResend) {
    DamagedChain chain;
    Bytes late;
    chain.transport->damage = [&](Bytes& reply) { late = std::exchange(reply, {}); };
    auto reading = spawn(chain.time.executor(), chain.client.read(1, K7Q::module(7).value()));
    chain.time.advance(740ms);
    ASSERT_FALSE(late.empty());
    chain.transport->onData(ByteView(late).first(20));
    chain.time.advance(11ms);
    chain.transport->onData(ByteView(late).subspan(20));
    chain.time.advance(0ms);
    EXPECT_TRUE(reading.isDone());
}

}  // namespace
}  // namespace Wendril
