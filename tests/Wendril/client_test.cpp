#include "Wendril/client.hpp"

#include "tests/Wendril/scripted.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Wendril {
namespace {

using namespace Tests;
using namespace std::string_view_literals;

ModuleRef moduleAt(int number) { return K7Q::module(static_cast<std::uint8_t>(number)).value(); }

Bytes identity(std::string_view model, std::uint32_t high, std::uint32_t low) {
    Bytes payload{9, 1, 0, 0, 0, 0, 0, 0, 1, 4, 2, 1, 0xE8, 7, 3, 7};
    payload.resize(28);
    std::ranges::copy(model, payload.begin() + 16);
    appendU32(payload, high);
    appendU32(payload, low);
    return payload;
}

Bytes slot(std::uint32_t number, std::string_view name) {
    Bytes payload;
    appendU32(payload, number);
    std::ranges::copy(name, std::back_inserter(payload));
    return payload;
}

Frame replyTo(const Frame& request, Bytes payload) {
    return {9, request.address, *request.function(), std::move(payload)};
}

Frame ack(std::uint8_t address, std::uint8_t code, std::uint8_t status = 0) {
    return {9, address, Fun::ack, {status, code, 0, 0}};
}

// The commands, to the speaker at address 1. A plain "no" counts as a time-out.
using Command = std::function<void(Scripted&)>;
void require(bool answered) {
    if (!answered) throw BusError::timeout(2);
}
const Command ping = [](Scripted& s) { require(s.run(s.client.ping(1, 123ms))); };
const Command scan = [](Scripted& s) { require(!s.run(s.client.scan(1, 1)).empty()); };
const Command info = [](Scripted& s) { s.run(s.client.info(1)); };
const Command readGain = [](Scripted& s) { s.run(s.client.read(1, moduleAt(4))); };
const Command readVu = [](Scripted& s) { s.run(s.client.read(1, moduleAt(93))); };
const Command meters = [](Scripted& s) { s.run(s.client.meters(1)); };
const Command write = [](Scripted& s) { s.run(s.client.write(1, moduleAt(71), ModuleValue{true})); };
const Command presetInfo = [](Scripted& s) { s.run(s.client.presetInfo(1)); };
const Command presetName = [](Scripted& s) { s.run(s.client.presetName(1, 5)); };
const std::string longName = "aááááááááááá";  // byte 20 is within a letter
const Command save = [](Scripted& s) { s.run(s.client.savePreset(1, 3, longName)); };
const Command load = [](Scripted& s) { s.run(s.client.loadPreset(1, 300)); };
const Command remove31 = [](Scripted& s) { s.run(s.client.deletePreset(1, 31)); };
const Command remove32 = [](Scripted& s) { s.run(s.client.deletePreset(1, 32)); };
const Command assign = [](Scripted& s) { require(!s.run(s.client.assignAddresses(1)).empty()); };

constexpr int none = -1;
const Frame module(9, 1, Fun::moduleGet, {0, 4, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0});
const Frame levels(9, 1, Fun::moduleGet, {0, 93, 0, 0});
const Bytes blankName = slot(5, "                    ");
const Frame self(9, 1, Fun::devInfo, identity("A", 0, 1));

const struct {
    Command command;
    int address;
    int code;
    Bytes payload;
    Duration timeout;
    std::size_t sends;
    Frame answer;
    int key;      // the byte of the answer's payload that tells what it answers
    bool anyone;  // may answer
} rows[] = {
    {ping, 1, 2, Bytes(8), 123ms, 1, {9, 1, Fun::linkStatus, {}}, none, false},
    {scan, 1, 2, Bytes(8), 200ms, 1, {9, 1, Fun::linkStatus, {}}, none, false},
    {info, 1, 3, {}, 400ms, 2, self, none, false},
    {readGain, 1, 5, {0, 4, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0}, 750ms, 2, module, 1, false},
    {readVu, 1, 5, {0, 93, 0, 0}, 750ms, 2, levels, 1, false},
    {meters, 1, 5, {0, 93, 0, 0}, 300ms, 1, levels, 1, false},
    {write, 1, 6, {0, 71, 0, 0, 1, 0, 0, 0}, 750ms, 2, ack(1, 6), 1, false},
    {presetInfo, 1, 7, {}, 750ms, 2, {9, 1, Fun::presetInfoGet, {}}, none, false},
    {presetName, 1, 9, blankName, 750ms, 2, {9, 1, Fun::presetName, slot(5, "")}, 0, false},
    {save, 1, 10, slot(3, longName.substr(0, 20)), 3s, 2, ack(1, 10, 9), 1, true},
    {load, 1, 11, {0x2C, 1, 0, 0}, 3s, 2, ack(1, 11, 9), 1, true},
    {remove31, 1, 12, {0, 0, 0, 0x80}, 750ms, 2, ack(1, 12, 9), 1, true},
    {remove32, 1, 12, {0, 0, 0, 0}, 750ms, 2, ack(1, 12, 9), 1, true},
    {assign, 0xFF, 49, {}, 5s, 2, ack(1, 49, 9), 1, true},
    {assign, 0xFF, 3, {}, 400ms, 2, self, none, true},  // two rounds, no resend
    {assign, 0xFF, 50, {1, 0, 0, 0}, 750ms, 2, ack(1, 50, 9), 1, true},
};

// A far end that gives that answer to that function, and to others what lets a command go on.
ScriptedTransport::Answer answering(int code, const std::vector<Frame>& answer) {
    return [=](const Frame& request) -> std::vector<Frame> {
        if (request.fun == code) return answer;
        return {request.function() == Fun::devInfo ? self : ack(1, request.fun)};
    };
}

bool isAnswered(const Command& command, Scripted& far) {
    return failureOf([&] { command(far); }).find("A caixa não respondeu") == std::string::npos;
}

TEST(ClientTest, EveryCommandHasItsBytesTimeoutResendsAndAnswer) {
    for (const auto& row : rows) {
        Scripted silent(answering(row.code, {}));
        EXPECT_FALSE(isAnswered(row.command, silent)) << row.code;
        const auto address = static_cast<std::uint8_t>(row.address);
        const auto code = static_cast<std::uint8_t>(row.code);
        const Frame request(address == 0xFF ? 0xFF : 9, address, code, 0, 0, row.payload);
        const Bytes bytes = FrameCodec::encode(request, false, code == 49 ? Bytes{0} : Bytes{});
        EXPECT_EQ(std::ranges::count(silent.transport->written, bytes), row.sends) << row.code;
        EXPECT_EQ(silent.time.elapsed(), row.timeout * row.sends) << row.code;

        const auto takes = [&row](const auto& change) {
            Frame answer = row.answer;
            change(answer);
            Scripted far(answering(row.code, {answer}));
            return isAnswered(row.command, far);
        };
        EXPECT_TRUE(takes([](Frame&) {})) << row.code;
        EXPECT_EQ(takes([](Frame& answer) { answer.address = 2; }), row.anyone) << row.code;
        EXPECT_FALSE(takes([](Frame& answer) { answer.fun = 54; })) << row.code;
        if (row.key == none) continue;
        const auto key = static_cast<std::size_t>(row.key);
        EXPECT_FALSE(takes([key](Frame& answer) { answer.payload[key] ^= 1; })) << row.code;
    }
}

TEST(ClientTest, ADamagedReplyCostsNoMoreThanTheAttemptThatItAnswers) {
    for (const auto& row : rows) {
        if (row.address == 0xFF) continue;  // many requests
        const auto expectOneLostAttempt = [&row](const auto& damage) {
            Scripted far(answering(row.code, {row.answer}));
            far.transport->damage = damage;
            EXPECT_TRUE(isAnswered(row.command, far) || row.sends == 1) << row.code;
            EXPECT_LE(far.time.elapsed(), row.timeout) << row.code;
            EXPECT_TRUE(isAnswered(row.command, far)) << row.code;
        };
        for (std::size_t bit = 0; bit < 8 * wire(row.answer).size(); ++bit)
            expectOneLostAttempt(
                [bit](Bytes& reply) { reply[bit / 8] ^= static_cast<std::uint8_t>(1U << bit % 8); });
        const Bytes headOf64Words{0x55, 9, 1, 5, 0, 0, 0, 0, 64, 0, 0, 0};
        expectOneLostAttempt([&headOf64Words](Bytes& reply) {
            reply.insert(reply.begin(), headOf64Words.begin(), headOf64Words.end());
        });
    }
}

TEST(ClientTest, WhatABoardRefusesOrCutsShortIsRejected) {
    const Command readBand = [](Scripted& s) { s.run(s.client.read(1, moduleAt(7))); };
    const std::tuple<Command, Frame, BusError> rows[] = {
        {readBand, {9, 1, Fun::moduleGet, {0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}}, BusError::rejected(5)},
        {readVu, {9, 1, Fun::moduleGet, {0, 93, 0, 0, 0, 0, 0, 0}}, BusError::rejected(5)},
        {info, {9, 1, Fun::devInfo, Bytes(32)}, BusError::rejected(3)},
        {write, ack(1, 6, 3), BusError::rejected(6)},
    };
    for (const auto& [command, reply, error] : rows) {
        Scripted s([&reply = reply](const Frame&) { return std::vector{reply}; });
        EXPECT_EQ(failureOf([&, &command = command] { command(s); }), error.what());
    }
}

TEST(ClientTest, MetersGiveWhatTheReplyHolds) {
    for (const auto& [bytes, count] : std::map<std::size_t, std::size_t>{{28, 6}, {36, 6}, {16, 3}, {4, 0}}) {
        Bytes payload{0, 93, 0, 0};
        for (const float level : {-std::numeric_limits<float>::infinity(), std::nanf("")})
            appendF32(payload, level);
        payload.resize(bytes);
        Scripted s([&payload](const Frame& request) { return std::vector{replyTo(request, payload)}; });
        const auto levels = s.run(s.client.meters(1));
        ASSERT_EQ(levels.size(), count);
        EXPECT_TRUE(levels.empty() || (std::isinf(levels[0]) && std::isnan(levels[1]) && levels[2] == 0));
    }
}

TEST(ClientTest, AnIdentityIsReadFieldByFieldWhateverItsBytes) {
    EXPECT_EQ(DeviceInfo::parse(identity("AB", 123, 4567)),
              (DeviceInfo{9, 1, "AB", "1.4.258", "2024-03-07", "1234567"}));
    EXPECT_EQ(DeviceInfo::parse(identity("", 0, 42))->serial, "042");
    const Bytes whole = identity("AB", 1, 1);
    EXPECT_FALSE(DeviceInfo::parse(ByteView(whole).first(35)).has_value());

    const struct {
        std::string_view field;
        std::string_view text;
    } models[] = {
        {"            ", ""},
        {"\t twelve \t", "twelve"},
        {"a\x80z", "a\uFFFDz"},                            // lone continuation
        {"\xC3\xA1\xC3", "á\uFFFD"},                       // cut inside a letter
        {"\xE2\x82z", "\uFFFDz"},                          // truncated before another letter
        {"\xC0\xAF", "\uFFFD\uFFFD"},                      // overlong
        {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},            // surrogate
        {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // above the last code point
        {"\xF0\x9F\x94\x8A", "\U0001F50A"},
    };
    for (const auto& [field, text] : models)
        EXPECT_EQ(DeviceInfo::parse(identity(field, 0, 0))->model, text);
}

TEST(ClientTest, PresetRepliesMayEndEarlyAndNamesAreTrimmed) {
    Bytes payload;
    Scripted s([&](const Frame& request) { return std::vector{replyTo(request, payload)}; });
    EXPECT_EQ(s.run(s.client.presetInfo(1)), K7QClient::PresetInfo{});
    payload = {1, 0, 0, 0, 9, 0, 0, 0x80};
    const auto directory = s.run(s.client.presetInfo(1));
    EXPECT_EQ(directory, (K7QClient::PresetInfo{1, 0x80000009, 0}));
    for (const int n : {-1, 0, 1, 3, 31, 32, 35})
        EXPECT_EQ(directory.isStored(n), n == 0 || n == 3 || n == 31) << n;
    for (const auto name : {"Show                "sv, "Show\0\0\0\0"sv, "Show"sv}) {
        payload = slot(5, name);
        EXPECT_EQ(s.run(s.client.presetName(1, 5)), "Show");
    }
    payload = slot(5, "twenty letters exactly s");
    EXPECT_EQ(s.run(s.client.presetName(1, 5)), "twenty letters exact");
}

TEST(ClientTest, AllModulesAreReadAsTheBoardHoldsThem) {
    Chain chain;
    std::vector<double> fractions;
    const ModuleValues values = chain.run(chain.client.readAll(2, [&](double f) { fractions.push_back(f); }));
    EXPECT_EQ(values.size(), 92U);
    for (const auto& [number, value] : values)
        EXPECT_EQ(value, chain.line->board(1).value(number));
    ASSERT_EQ(fractions.size(), 92U);
    EXPECT_EQ(std::pair(fractions.front(), fractions.back()), std::pair(1.0 / 92, 1.0));
    EXPECT_TRUE(chain.hostFaults().empty());
}

TEST(ClientTest, AScanAsksEveryAddressAndWaitsForTheSilentOnesOnly) {
    Chain chain({.boards = 16});
    const auto all = chain.run(chain.client.scan(1, 16));
    ASSERT_EQ(all.size(), 16U);
    for (std::size_t i = 0; i < 16; ++i)
        EXPECT_EQ(all[i].address, i + 1);
    EXPECT_EQ(chain.time.elapsed(), 0ms);
    chain.line->mute(14);
    EXPECT_EQ(chain.run(chain.client.scan(14, 18)).size(), 2U);
    EXPECT_EQ(chain.time.elapsed(), 3 * 200ms);
    EXPECT_EQ(chain.sent(), 32U + 5U + 2U);
    EXPECT_TRUE(chain.run(chain.client.scan(250, 255)).empty());
    EXPECT_EQ(chain.sent(), 39U + 6U);
    chain.run(chain.bus->close());
    EXPECT_TRUE(chain.run(chain.client.scan(1, 255)).empty());
}

TEST(ClientTest, AddressingGivesEveryBoardOfTheChainItsPlace) {
    Chain chain({.boards = 16, .addressed = false});
    EXPECT_EQ(chain.run(chain.client.assignAddresses(0)).size(), 0U);
    EXPECT_EQ(chain.sent(), 1U);
    EXPECT_EQ(chain.run(chain.client.assignAddresses(2)).size(), 2U);
    EXPECT_EQ(chain.sent(), 1U + 5U);
    const auto found = chain.run(chain.client.assignAddresses(300));
    ASSERT_EQ(found.size(), 16U);
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_EQ(found[i].address, i + 1);
        EXPECT_EQ(found[i].serial, "2407" + std::to_string(4001 + i));
        EXPECT_EQ(chain.line->board(i).address(), i + 1);
    }
    EXPECT_EQ(chain.time.elapsed(), 2 * 400ms);  // the two rounds at the end of the chain
    EXPECT_TRUE(chain.hostFaults().empty());
}

TEST(ClientTest, AddressingGivesEachBoardASecondChanceToAnswer) {
    // What the rounds of identify bring: silence, a board, a reply too short, a board, the end.
    const std::vector<Bytes> rounds{{}, identity("A", 0, 1), Bytes(32), identity("B", 0, 2), {}, {}};
    std::size_t round = 0;
    Scripted s([&](const Frame& request) -> std::vector<Frame> {
        if (request.function() != Fun::devInfo) return {ack(77, request.fun, 7)};
        const Bytes& payload = rounds.at(round++);
        return std::vector(payload.empty() ? 0 : 1, Frame(9, 5, Fun::devInfo, payload));
    });
    const auto found = s.run(s.client.assignAddresses(16));
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1].model, "B");
    EXPECT_EQ(found[1].address, 2);
    EXPECT_EQ(round, rounds.size());
}

}  // namespace
}  // namespace Wendril
