#include "Wendril/client.hpp"

#include "Wendril/limits.hpp"
#include "Wendril/text.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <string_view>
#include <utility>

namespace Wendril {

using namespace std::chrono_literals;

namespace {

constexpr std::uint8_t everyone = 0xFF;  // product and address of a broadcast
constexpr std::size_t headerBytes = 4;   // before the value in a module payload
constexpr auto scanTimeout = 200ms;

struct Command {
    Fun fun;
    Duration timeout;
    int resends;
};

constexpr Command infoCommand{Fun::devInfo, 400ms, 1};
constexpr Command readCommand{Fun::moduleGet, 750ms, 1};
constexpr Command writeCommand{Fun::moduleSet, 750ms, 1};
constexpr Command metersCommand{Fun::moduleGet, 300ms, 0};
constexpr Command startCommand{Fun::netStart, 5s, 1};
constexpr Command identifyCommand{Fun::devInfo, 400ms, 0};
constexpr Command setAddressCommand{Fun::netAddressSet, 750ms, 1};
constexpr Command presetInfoCommand{Fun::presetInfoGet, 750ms, 1};
constexpr Command presetNameCommand{Fun::presetName, 750ms, 1};
constexpr Command savePresetCommand{Fun::presetSave, 3s, 1};
constexpr Command loadPresetCommand{Fun::presetLoad, 3s, 1};
constexpr Command deletePresetCommand{Fun::presetDelete, 750ms, 1};

std::uint8_t codeOf(Fun fun) { return static_cast<std::uint8_t>(fun); }

Bus::Match replyFrom(std::uint8_t address, Fun fun) {
    return [=](const Frame& frame) { return frame.fun == codeOf(fun) && frame.address == address; };
}

Bus::Match replyFromAny(Fun fun) {
    return [=](const Frame& frame) { return frame.fun == codeOf(fun); };
}

// Byte 1 of a module reply is the module number.
Bus::Match moduleReply(std::uint8_t address, std::uint8_t module) {
    return [=](const Frame& frame) {
        return frame.fun == codeOf(Fun::moduleGet) && frame.address == address &&
               u8(frame.payload, 1) == module;
    };
}

bool acknowledges(const Frame& frame, Fun fun) {
    return frame.fun == codeOf(Fun::ack) && u8(frame.payload, 1) == codeOf(fun);
}

Bus::Match ackFrom(std::uint8_t address, Fun fun) {
    return [=](const Frame& frame) { return frame.address == address && acknowledges(frame, fun); };
}

Bus::Match ackFromAny(Fun fun) {
    return [=](const Frame& frame) { return acknowledges(frame, fun); };
}

Bytes moduleHeader(std::uint8_t module) { return {0, module, 0, 0}; }

Bytes numberPayload(std::uint32_t number) {
    Bytes payload;
    appendU32(payload, number);
    return payload;
}

// A slot number and a name field, padded with spaces.
Bytes namedSlot(std::uint32_t number, const std::string& name) {
    Bytes payload = numberPayload(number);
    for (const char letter : std::string_view(name).substr(0, presetNameBytes))
        payload.push_back(static_cast<std::uint8_t>(letter));
    payload.resize(headerBytes + presetNameBytes, ' ');
    return payload;
}

Task<Frame> send(const K7QClient& client, std::uint8_t address, const Command& command, Bytes payload,
                 Bus::Match match) {
    const Frame frame(client.product, address, command.fun, std::move(payload));
    return client.bus->request(FrameCodec::encode(frame, false, {}), command.timeout, command.resends,
                               std::move(match));
}

Task<Frame> broadcast(const K7QClient& client, const Command& command, Bytes payload, ByteView stray,
                      Bus::Match match) {
    const Frame frame(everyone, everyone, command.fun, std::move(payload));
    return client.bus->request(FrameCodec::encode(frame, false, stray), command.timeout, command.resends,
                               std::move(match));
}

// The operations are coroutines outside the class, each with a copy of its client: the client that was
// called may be gone by the time they run.

Task<bool> pingOf(K7QClient client, std::uint8_t address, Duration timeout) {
    try {
        co_await send(client, address, {Fun::linkStatus, timeout, 0}, Bytes(8),
                      replyFrom(address, Fun::linkStatus));
        co_return true;
    } catch (const std::exception&) {
        co_return false;
    }
}

Task<DeviceInfo> infoOf(K7QClient client, std::uint8_t address) {
    const Frame reply = co_await send(client, address, infoCommand, {}, replyFrom(address, Fun::devInfo));
    auto info = DeviceInfo::parse(reply.payload);
    if (!info) throw BusError::rejected(codeOf(Fun::devInfo));
    co_return *std::move(info);
}

Task<std::vector<DeviceInfo>> scanOf(K7QClient client, std::uint8_t first, std::uint8_t last) {
    std::vector<DeviceInfo> found;
    for (int address = first; address <= last; ++address) {
        const auto target = static_cast<std::uint8_t>(address);
        if (!co_await client.ping(target, scanTimeout)) continue;
        try {
            found.push_back(co_await client.info(target));
        } catch (const std::exception&) {
            continue;  // it answers a ping, but with no identity it cannot be shown
        }
    }
    co_return found;
}

// The identity of the next board that has no address. Any failure counts as no answer.
Task<std::optional<DeviceInfo>> identify(K7QClient client) {
    try {
        const Frame reply = co_await broadcast(client, identifyCommand, {}, {}, replyFromAny(Fun::devInfo));
        co_return DeviceInfo::parse(reply.payload);
    } catch (const std::exception&) {
        co_return std::nullopt;
    }
}

// The boards answer in chain order: one that has taken an address falls silent on identify, so
// each round reaches the next board. Two rounds in a row without an answer are the end of the chain.
Task<std::vector<DeviceInfo>> assignAddressesOf(K7QClient client, int maxDevices) {
    constexpr std::array<std::uint8_t, 1> startStray{0x00};
    co_await broadcast(client, startCommand, {}, startStray, ackFromAny(Fun::netStart));
    std::vector<DeviceInfo> found;
    bool secondChance = true;
    const auto wanted = static_cast<std::size_t>(std::clamp(maxDevices, 0, 254));
    while (found.size() < wanted) {
        std::optional<DeviceInfo> next = co_await identify(client);
        if (!next) {
            if (!std::exchange(secondChance, false)) break;
            continue;
        }
        const auto address = static_cast<std::uint8_t>(found.size() + 1);
        co_await broadcast(client, setAddressCommand, numberPayload(address), {},
                           ackFromAny(Fun::netAddressSet));
        next->address = address;
        found.push_back(*std::move(next));
        secondChance = true;
    }
    co_return found;
}

Task<bool> holdsAddressing(K7QClient client, std::vector<DeviceInfo> found) {
    try {
        for (const DeviceInfo& given : found) {
            const DeviceInfo answered = co_await client.info(given.address);
            if (answered.serial != given.serial) co_return false;
        }
    } catch (const BusError&) {
        co_return false;
    }
    const auto next = static_cast<std::uint8_t>(found.size() + 1);
    if (co_await client.ping(next, scanTimeout)) co_return false;
    // A board that was passed over has no address and still answers.
    const auto passedOver = co_await identify(client);
    co_return !passedOver;
}

Task<K7QClient::Addressing> assignVerifiedOf(K7QClient client, int maxDevices) {
    constexpr int mostRounds = 3;
    for (int round = 1;; ++round) {
        const std::uint64_t resentBefore = client.bus->record->resent(everyone);
        auto found = co_await client.assignAddresses(maxDevices);
        const bool isClean = client.bus->record->resent(everyone) == resentBefore;
        const bool holds = isClean || co_await holdsAddressing(client, found);
        if (holds || round == mostRounds) co_return K7QClient::Addressing{std::move(found), holds};
    }
}

// The request carries the module's default value, so that it is as long as the value it asks for.
Task<ModuleValue> readOf(K7QClient client, std::uint8_t address, ModuleRef ref) {
    Bytes payload = moduleHeader(ref.index);
    if (const auto factory = ModuleValue::factory(ref)) append(payload, factory->encoded());
    const Frame reply =
        co_await send(client, address, readCommand, std::move(payload), moduleReply(address, ref.index));
    const ByteView bytes(reply.payload);
    const auto value = ModuleValue::decode(ref.kind, bytes.subspan(std::min(headerBytes, bytes.size())));
    if (!value) throw BusError::rejected(codeOf(Fun::moduleGet));
    co_return *value;
}

Task<void> writeOf(K7QClient client, std::uint8_t address, ModuleRef ref, ModuleValue value) {
    Bytes payload = moduleHeader(ref.index);
    append(payload, value.encoded());
    const Frame reply =
        co_await send(client, address, writeCommand, std::move(payload), ackFrom(address, Fun::moduleSet));
    if (u8(reply.payload, 0) != 0) throw BusError::rejected(codeOf(Fun::moduleSet));
}

Task<ModuleValues> readAllOf(K7QClient client, std::uint8_t address, K7QClient::Progress progress) {
    std::vector<ModuleRef> settable;
    std::ranges::copy_if(K7Q::modules(), std::back_inserter(settable),
                         [](const ModuleRef& ref) { return ref.kind != ModuleKind::vu; });
    ModuleValues values;
    for (const ModuleRef& ref : settable) {
        values.insert_or_assign(ref.index, co_await client.read(address, ref));
        if (progress) progress(static_cast<double>(values.size()) / static_cast<double>(settable.size()));
    }
    co_return values;
}

Task<std::vector<float>> metersOf(K7QClient client, std::uint8_t address) {
    const Frame reply = co_await send(client, address, metersCommand, moduleHeader(K7Q::meterIndex),
                                      moduleReply(address, K7Q::meterIndex));
    std::vector<float> levels;
    for (std::size_t at = headerBytes;
         at + 4 <= reply.payload.size() && levels.size() < K7Q::meterChannels.size(); at += 4)
        levels.push_back(f32(reply.payload, at));
    co_return levels;
}

Task<K7QClient::PresetInfo> presetInfoOf(K7QClient client, std::uint8_t address) {
    const Frame reply =
        co_await send(client, address, presetInfoCommand, {}, replyFrom(address, Fun::presetInfoGet));
    co_return K7QClient::PresetInfo{u32(reply.payload, 0), u32(reply.payload, 4), u32(reply.payload, 8)};
}

Task<std::string> presetNameOf(K7QClient client, std::uint8_t address, std::uint32_t number) {
    auto match = [=](const Frame& frame) {
        return frame.fun == codeOf(Fun::presetName) && frame.address == address &&
               u32(frame.payload, 0) == number;
    };
    const Frame reply =
        co_await send(client, address, presetNameCommand, namedSlot(number, ""), std::move(match));
    const ByteView payload(reply.payload);
    const ByteView name = payload.subspan(std::min(headerBytes, payload.size()));
    co_return fieldText(name.first(std::min(presetNameBytes, name.size())));
}

Task<bool> changePreset(K7QClient client, std::uint8_t address, Command command, Bytes payload) {
    const Frame reply = co_await send(client, address, command, std::move(payload), ackFromAny(command.fun));
    co_return u8(reply.payload, 0) == 0;
}

template <std::size_t width>
std::string decimal(unsigned number) {
    std::string digits = std::to_string(number);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    return digits;
}

}  // namespace

std::optional<DeviceInfo> DeviceInfo::parse(ByteView payload) {
    constexpr std::size_t shortest = 36;
    if (payload.size() < shortest) return std::nullopt;
    return DeviceInfo{
        .product = payload[0],
        .address = payload[1],
        .model = fieldText(payload.subspan(16, 12)),
        .version = decimal<1>(payload[8]) + "." + decimal<1>(payload[9]) + "." + decimal<1>(u16(payload, 10)),
        .date = decimal<4>(u16(payload, 12)) + "-" + decimal<2>(payload[14]) + "-" + decimal<2>(payload[15]),
        .serial = decimal<1>(u32(payload, 28)) + decimal<1>(u32(payload, 32)),
    };
}

Task<bool> K7QClient::ping(std::uint8_t address, Duration timeout) const {
    return pingOf(*this, address, timeout);
}

Task<DeviceInfo> K7QClient::info(std::uint8_t address) const { return infoOf(*this, address); }

Task<std::vector<DeviceInfo>> K7QClient::scan(std::uint8_t first, std::uint8_t last) const {
    return scanOf(*this, first, last);
}

Task<std::vector<DeviceInfo>> K7QClient::assignAddresses(int maxDevices) const {
    return assignAddressesOf(*this, maxDevices);
}

Task<K7QClient::Addressing> K7QClient::assignVerified(int maxDevices) const {
    return assignVerifiedOf(*this, maxDevices);
}

Task<ModuleValue> K7QClient::read(std::uint8_t address, ModuleRef ref) const {
    return readOf(*this, address, std::move(ref));
}

Task<void> K7QClient::write(std::uint8_t address, ModuleRef ref, ModuleValue value) const {
    return writeOf(*this, address, std::move(ref), std::move(value));
}

Task<ModuleValues> K7QClient::readAll(std::uint8_t address, Progress progress) const {
    return readAllOf(*this, address, std::move(progress));
}

Task<std::vector<float>> K7QClient::meters(std::uint8_t address) const { return metersOf(*this, address); }

Task<K7QClient::PresetInfo> K7QClient::presetInfo(std::uint8_t address) const {
    return presetInfoOf(*this, address);
}

Task<std::string> K7QClient::presetName(std::uint8_t address, std::uint32_t number) const {
    return presetNameOf(*this, address, number);
}

Task<bool> K7QClient::loadPreset(std::uint8_t address, std::uint32_t number) const {
    return changePreset(*this, address, loadPresetCommand, numberPayload(number));
}

Task<bool> K7QClient::savePreset(std::uint8_t address, std::uint32_t number, std::string name) const {
    return changePreset(*this, address, savePresetCommand, namedSlot(number, name));
}

Task<bool> K7QClient::deletePreset(std::uint8_t address, std::uint32_t number) const {
    const std::uint32_t mask = number < 32 ? std::uint32_t{1} << number : 0;
    return changePreset(*this, address, deletePresetCommand, numberPayload(mask));
}

}  // namespace Wendril
