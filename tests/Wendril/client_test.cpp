#include "Wendril/client.hpp"

#include "tests/chain.hpp"

#include <algorithm>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Wendril {
namespace {

using namespace Tests;

// A board that answers every request with frames that the test prescribes.
class ScriptedTransport final : public Transport {
public:
    using Answer = std::function<std::vector<Frame>(const Frame& request)>;

    ScriptedTransport(std::shared_ptr<Executor> executor, Answer answer)
        : executor(std::move(executor))
        , answer(std::move(answer)) {}

    std::string name() const override { return "scripted"; }
    void open(OnData data, OnClose) override { onData = std::move(data); }
    void write(ByteView data) override {
        written.emplace_back(hex(data));
        for (const Frame& request : parser.feed(data))
            for (const Frame& reply : answer(request))
                onData(FrameCodec::encode(reply, false, {}));
    }
    void close() override {}
    std::shared_ptr<Executor> queue() const override { return executor; }

    std::vector<std::string> written;

private:
    const std::shared_ptr<Executor> executor;
    const Answer answer;
    OnData onData;
    FrameParser parser;
};

struct Scripted {
    explicit Scripted(ScriptedTransport::Answer answer)
        : transport(std::make_shared<ScriptedTransport>(time.executor(), std::move(answer)))
        , client(std::make_shared<Bus>(transport), K7Q::productID) {
        time.run(client.bus->open());
    }

    Simulator::VirtualTime time;
    std::shared_ptr<ScriptedTransport> transport;
    K7QClient client;
};

Frame replyTo(const Frame& request, Bytes payload) {
    return {9, request.address, *request.function(), std::move(payload)};
}

Frame ackOf(const Frame& request, std::uint8_t status) {
    return {9, request.address, Fun::ack, {status, request.fun, 0, 0}};
}

ModuleRef moduleAt(int number) { return K7Q::module(static_cast<std::uint8_t>(number)).value(); }

TEST(ClientTest, EveryModuleReadsAsTheBoardHoldsItAndEveryWriteArrives) {
    Chain chain;
    for (int number = 1; number <= 92; ++number) {
        const ModuleRef ref = moduleAt(number);
        const ModuleValue value =
            ModuleValue::decode(ref.kind, Bytes(24, static_cast<std::uint8_t>(number))).value();
        chain.run(chain.client.write(2, ref, value));
        EXPECT_EQ(chain.line->board(1).value(ref.index), value) << labelOf(ref);
    }
    std::vector<double> fractions;
    const ModuleValues values = chain.run(chain.client.readAll(2, [&](double f) { fractions.push_back(f); }));
    ASSERT_EQ(values.size(), 92U);
    for (const auto& [number, value] : values)
        EXPECT_EQ(value, chain.line->board(1).value(number));
    EXPECT_EQ(fractions.size(), 92U);
    EXPECT_DOUBLE_EQ(fractions.front(), 1.0 / 92);
    EXPECT_EQ(fractions.back(), 1.0);
    EXPECT_TRUE(chain.hostFaults().empty());
}

TEST(ClientTest, ReadingASpeakerTakesTheTimeOfItsBytes) {
    Chain chain({.pace = true, .turnaround = 1ms});
    const auto before = chain.time.elapsed();
    chain.run(chain.client.readAll(1, nullptr));
    const double milliseconds =
        std::chrono::duration<double, std::milli>(chain.time.elapsed() - before).count();
    EXPECT_NEAR(milliseconds, 6160 * 10 / 115.2 + 92, 0.1);
}

TEST(ClientTest, ReadsSendTheDefaultValueAndDecodeAfterTheHeader) {
    std::size_t payloadBytes = 0;
    Scripted s([&](const Frame& request) {
        return std::vector{replyTo(request, [&] {
            Bytes payload{0, u8(request.payload, 1), 0, 0};
            payload.resize(payloadBytes);
            return payload;
        }())};
    });
    payloadBytes = 12;
    s.time.run(s.client.read(3, moduleAt(4)));
    EXPECT_EQ(s.transport->written.back(),
              "55 09 03 05 00 00 00 00 03 00 00 00 00 04 00 00 00 00 00 00 00 01 00 00 FD FA FF FF");
    payloadBytes = 16;  // one word short
    EXPECT_EQ(failureOf([&] { s.time.run(s.client.read(1, moduleAt(7))); }),
              "A caixa recusou o comando (função 5)");
    payloadBytes = 20;
    EXPECT_EQ(failureOf([&] { s.time.run(s.client.read(1, moduleAt(7))); }), "");
    payloadBytes = 12;
    EXPECT_EQ(failureOf([&] { s.time.run(s.client.read(1, moduleAt(93))); }),
              "A caixa recusou o comando (função 5)");
}

TEST(ClientTest, AReplyForAnotherModuleAddressOrCommandIsNoAnswer) {
    const std::vector<std::function<Frame(const Frame&)>> wrongReplies{
        [](const Frame& r) {
            return replyTo(r, {0, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
        },
        [](const Frame& r) {
            return Frame(9, 2, *r.function(), Bytes{0, 7, 0, 0});
        },
        [](const Frame& r) {
            return Frame(9, r.address, Fun::moduleSet, Bytes{0, 7, 0, 0});
        },
        [](const Frame& r) {
            return Frame(9, r.address, Fun::ack, Bytes{0, 5, 0, 0});
        },
        [](const Frame& r) { return replyTo(r, {}); },
    };
    for (const auto& wrong : wrongReplies) {
        Scripted s([&](const Frame& request) { return std::vector{wrong(request)}; });
        EXPECT_EQ(failureOf([&] { s.time.run(s.client.read(1, moduleAt(7))); }),
                  "A caixa não respondeu (função 5)");
        EXPECT_EQ(s.transport->written.size(), 2U);
    }
}

TEST(ClientTest, ARefusedWriteIsAnErrorAndAnAckOfAnotherIsNot) {
    std::uint8_t status = 0;
    Scripted s([&](const Frame& request) {
        return std::vector{Frame(9, 2, Fun::ack, {3, request.fun, 0, 0}),
                           Frame(9, request.address, Fun::ack, {3, 5, 0, 0}), ackOf(request, status)};
    });
    const auto write = [&] { s.time.run(s.client.write(1, moduleAt(71), ModuleValue{true})); };
    EXPECT_EQ(failureOf(write), "");
    EXPECT_EQ(s.transport->written.back(),
              "55 09 01 06 00 00 00 00 02 00 00 00 00 47 00 00 01 00 00 00 FD B8 FF FF");
    status = 3;
    EXPECT_EQ(failureOf(write), "A caixa recusou o comando (função 6)");
}

TEST(ClientTest, MetersGiveWhatTheReplyHolds) {
    const auto levelsIn = [](std::size_t bytes) {
        Scripted s([bytes](const Frame& request) {
            Bytes payload{0, 93, 0, 0};
            appendF32(payload, -std::numeric_limits<float>::infinity());
            appendF32(payload, std::nanf(""));
            while (payload.size() < bytes)
                appendF32(payload, -12);
            payload.resize(bytes);
            return std::vector{replyTo(request, payload)};
        });
        return s.time.run(s.client.meters(1));
    };
    EXPECT_EQ(levelsIn(28).size(), 6U);
    EXPECT_EQ(levelsIn(36).size(), 6U);
    EXPECT_EQ(levelsIn(16).size(), 3U);
    EXPECT_TRUE(levelsIn(4).empty());
    EXPECT_TRUE(std::isinf(levelsIn(28)[0]));
    EXPECT_TRUE(std::isnan(levelsIn(28)[1]));
}

TEST(ClientTest, MetersFollowGainAndMute) {
    Chain chain;
    const auto level = [&](std::size_t channel) { return chain.run(chain.client.meters(1)).at(channel); };
    const float before = level(2);
    chain.run(chain.client.write(1, moduleAt(3), ModuleValue{GainValue{-10, false, true}}));
    EXPECT_NEAR(level(2), before - 10, 0.01);
    chain.run(chain.client.write(1, moduleAt(3), ModuleValue{GainValue{-10, true, true}}));
    EXPECT_EQ(level(2), -120);
    EXPECT_EQ(level(4), before);  // Out2 hears the same input
}

Bytes identity(std::string_view model, std::uint32_t high, std::uint32_t low) {
    Bytes payload{9, 1, 0, 0, 0, 0, 0, 0, 1, 4, 2, 1, 0xE8, 7, 3, 7};
    payload.resize(28);
    std::ranges::copy(model, payload.begin() + 16);
    appendU32(payload, high);
    appendU32(payload, low);
    return payload;
}

TEST(ClientTest, AnIdentityIsReadFieldByFieldWhateverItsBytes) {
    EXPECT_EQ(DeviceInfo::parse(identity("AB", 123, 4567)),
              (DeviceInfo{9, 1, "AB", "1.4.258", "2024-03-07", "1234567"}));
    EXPECT_EQ(DeviceInfo::parse(identity("            ", 0, 42))->model, "");
    EXPECT_EQ(DeviceInfo::parse(identity("", 0, 42))->serial, "042");
    EXPECT_EQ(DeviceInfo::parse(identity("\t twelve", 0, 0))->model, "twelve");
    const Bytes whole = identity("AB", 1, 1);
    EXPECT_FALSE(DeviceInfo::parse(ByteView(whole).first(35)).has_value());

    const struct {
        std::string_view field;
        std::string_view text;
    } broken[] = {
        {"a\x80z", "a\uFFFDz"},                            // lone continuation
        {"\xC3\xA1\xC3", "á\uFFFD"},                       // cut inside a letter
        {"\xE2\x82z", "\uFFFDz"},                          // truncated before another letter
        {"\xC0\xAF", "\uFFFD\uFFFD"},                      // overlong
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},            // surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // above the last code point
        {"\xF0\x9F\x94\x8A", "\U0001F50A"},
        {"\xFF", "\uFFFD"},
    };
    for (const auto& [field, text] : broken)
        EXPECT_EQ(DeviceInfo::parse(identity(field, 0, 0))->model, text);
}

TEST(ClientTest, AScanFindsWhoAnswersAndWaitsForNobodyElse) {
    Chain chain({.boards = 3});
    chain.line->mute(1);
    const auto found = chain.run(chain.client.scan(1, 5));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].address, 1);
    EXPECT_EQ(found[1].address, 3);
    EXPECT_EQ(chain.time.elapsed(), 3 * 200ms);
    EXPECT_EQ(chain.run(chain.client.scan(250, 255)).size(), 0U);
    EXPECT_EQ(chain.sent(), 5U + 2U + 6U);
    chain.run(chain.bus->close());
    EXPECT_TRUE(chain.run(chain.client.scan(1, 255)).empty());
}

TEST(ClientTest, ASpeakerThatCannotSayWhatItIsIsSkipped) {
    Scripted s([](const Frame& request) {
        if (request.address != 2) return std::vector<Frame>{};
        return std::vector{replyTo(request, Bytes(request.function() == Fun::devInfo ? 20 : 8))};
    });
    EXPECT_TRUE(s.time.run(s.client.scan(1, 3)).empty());
    EXPECT_EQ(failureOf([&] { s.time.run(s.client.info(2)); }), "A caixa recusou o comando (função 3)");
}

TEST(ClientTest, AddressingFollowsTheChain) {
    Chain chain({.boards = 4, .addressed = false});
    const auto found = chain.run(chain.client.assignAddresses(16));
    ASSERT_EQ(found.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(found[i].address, i + 1);
        EXPECT_EQ(found[i].serial, "2407" + std::to_string(4001 + i));
        EXPECT_EQ(chain.line->board(i).address(), i + 1);
    }
    EXPECT_EQ(chain.time.elapsed(), 2 * 400ms);  // nobody is left, twice
    EXPECT_TRUE(chain.hostFaults().empty());
}

TEST(ClientTest, AddressingStopsAtTheNumberAskedFor) {
    Chain chain({.boards = 3, .addressed = false});
    EXPECT_EQ(chain.run(chain.client.assignAddresses(2)).size(), 2U);
    EXPECT_EQ(chain.sent(), 5U);
    EXPECT_EQ(chain.run(chain.client.assignAddresses(0)).size(), 0U);
    EXPECT_EQ(chain.sent(), 6U);
}

TEST(ClientTest, AddressingGivesSilenceOneMoreChanceAndFailsWithItsSteps) {
    int identifies = 0;
    bool ackStart = true;
    bool ackAddress = true;
    const auto script = [&](const Frame& request) -> std::vector<Frame> {
        if (request.function() == Fun::netStart && ackStart) return {ackOf(request, 7)};
        if (request.function() == Fun::netAddressSet && ackAddress) return {ackOf(request, 7)};
        if (request.function() != Fun::devInfo) return {};
        switch (++identifies) {
        case 1:
            return {};  // asleep
        case 2:
            return {replyTo(request, identity("A", 0, 1))};
        case 3:
            return {replyTo(request, Bytes(32))};  // too short
        case 4:
            return {replyTo(request, identity("B", 0, 2))};
        default:
            return {};
        }
    };
    // The scripted parser drops the stray byte of the start as the noise that it is.
    Scripted s(script);
    const auto found = s.time.run(s.client.assignAddresses(16));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1].model, "B");
    EXPECT_EQ(found[1].address, 2);
    EXPECT_EQ(identifies, 6);

    ackAddress = false;
    identifies = 1;
    EXPECT_EQ(failureOf([&] { s.time.run(s.client.assignAddresses(16)); }),
              "A caixa não respondeu (função 50)");
    ackStart = false;
    const auto before = s.time.elapsed();
    EXPECT_EQ(failureOf([&] { s.time.run(s.client.assignAddresses(16)); }),
              "A caixa não respondeu (função 49)");
    EXPECT_EQ(s.time.elapsed() - before, 10s);
}

TEST(ClientTest, PresetsAreWholeSetsOfSettings) {
    Chain chain;
    const ModuleRef gain = moduleAt(1);
    const ModuleValue loud{GainValue{6, false, true}};
    const ModuleValue quiet{GainValue{-40, false, true}};
    chain.run(chain.client.write(1, gain, loud));
    chain.run(chain.client.savePreset(1, 3, "Show"));
    chain.run(chain.client.write(1, gain, quiet));
    chain.run(chain.client.savePreset(1, 31, "Missa de domingo às dez"));
    chain.run(chain.client.loadPreset(1, 3));
    EXPECT_EQ(chain.run(chain.client.read(1, gain)), loud);

    auto info = chain.run(chain.client.presetInfo(1));
    EXPECT_EQ(info, (K7QClient::PresetInfo{0, 0x80000008U, 3}));
    EXPECT_TRUE(info.isStored(3) && info.isStored(31));
    EXPECT_FALSE(info.isStored(0) || info.isStored(32) || info.isStored(-1) || info.isStored(35));
    EXPECT_EQ(chain.run(chain.client.presetName(1, 3)), "Show");
    EXPECT_EQ(chain.run(chain.client.presetName(1, 31)), "Missa de domingo às");

    chain.run(chain.client.deletePreset(1, 32));
    EXPECT_EQ(chain.run(chain.client.presetInfo(1)).validMask, 0x80000008U);
    chain.run(chain.client.deletePreset(1, 31));
    EXPECT_EQ(chain.run(chain.client.presetInfo(1)).validMask, 8U);
    EXPECT_TRUE(chain.hostFaults().empty());
}

TEST(ClientTest, PresetCommandsHaveTheirBytesAndAcceptAnyAck) {
    Scripted s([](const Frame& request) {
        return std::vector{Frame(9, 77, Fun::ack, {9, request.fun, 0, 0})};
    });
    const auto payloadOf = [&](Task<void> command) {
        s.time.run(std::move(command));
        return s.transport->written.back().substr(36);
    };
    EXPECT_EQ(payloadOf(s.client.savePreset(1, 3, "Show")).substr(0, 71),
              "03 00 00 00 53 68 6F 77 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20 20");
    // Eleven letters of two bytes: the field ends after the tenth.
    EXPECT_EQ(payloadOf(s.client.savePreset(1, 3, "ááááááááááá")).substr(12, 59),
              "C3 A1 C3 A1 C3 A1 C3 A1 C3 A1 C3 A1 C3 A1 C3 A1 C3 A1 C3 A1");
    // A letter cut in the middle leaves its first byte.
    EXPECT_EQ(payloadOf(s.client.savePreset(1, 3, "aááááááááááá")).substr(12 + 57, 2), "C3");
    EXPECT_EQ(payloadOf(s.client.deletePreset(1, 0)).substr(0, 11), "01 00 00 00");
    EXPECT_EQ(payloadOf(s.client.deletePreset(1, 31)).substr(0, 11), "00 00 00 80");
    EXPECT_EQ(payloadOf(s.client.deletePreset(1, 32)).substr(0, 11), "00 00 00 00");
    EXPECT_EQ(payloadOf(s.client.loadPreset(1, 300)).substr(0, 11), "2C 01 00 00");
}

TEST(ClientTest, ShortPresetRepliesReadAsZeroAndNamesMayEndEarly) {
    Bytes payload;
    Scripted s([&](const Frame& request) { return std::vector{replyTo(request, payload)}; });
    EXPECT_EQ(s.time.run(s.client.presetInfo(1)), K7QClient::PresetInfo{});
    payload = {1, 0, 0, 0, 2, 0, 0, 0};
    EXPECT_EQ(s.time.run(s.client.presetInfo(1)), (K7QClient::PresetInfo{1, 2, 0}));
    payload = {5, 0, 0, 0, 'S', 'h', 'o', 'w', 0, 'x', 'x', 'x'};
    EXPECT_EQ(s.time.run(s.client.presetName(1, 5)), "Show");
    EXPECT_EQ(failureOf([&] { s.time.run(s.client.presetName(1, 6)); }), "A caixa não respondeu (função 9)");
}

// After one late reply a host that takes whatever comes next stays one answer behind for good.
TEST(ClientTest, OneLateReplyMakesNoLaterAnswerWrong) {
    Chain chain;
    for (int number = 15; number <= 34; ++number)
        chain.line->board(0).store(static_cast<std::uint8_t>(number),
                                   ModuleValue{PeqValue{.fc = 1000U + static_cast<std::uint32_t>(number)}});
    Scripted late([&, first = true, held = std::vector<Frame>{}](const Frame& request) mutable {
        std::vector<Frame> replies = std::exchange(held, {});
        Frame reply = chain.line->board(0).answer(request, 0).value();
        if (std::exchange(first, false))
            held = {std::move(reply)};
        else
            replies.push_back(std::move(reply));
        return replies;
    });
    int wrong = 0;
    for (int number = 15; number <= 34; ++number) {
        const ModuleValue value = late.time.run(late.client.read(1, moduleAt(number)));
        wrong += value.as<PeqValue>()->fc != 1000U + static_cast<std::uint32_t>(number) ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace Wendril
