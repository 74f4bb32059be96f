#include "simulator/board.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string_view>

namespace Simulator {

using namespace Wendril;

namespace {

constexpr std::size_t headerBytes = 4;  // of a module payload
constexpr std::size_t nameBytes = 20;   // of a preset
constexpr std::string_view modelName = "K7Q-112A";
constexpr float silence = -120;  // lowest level that a meter shows

std::uint8_t moduleOf(const Frame& request) { return u8(request.payload, 1); }

float powerSum(float a, float b) {
    return 10 * std::log10(std::pow(10.0F, a / 10) + std::pow(10.0F, b / 10));
}

// A pseudo-random number from 0 to 1, always the same for the same arguments.
double chance(std::uint64_t seed, std::uint64_t a, std::uint64_t b) {
    std::seed_seq mixed{seed, seed >> 32, a, b};
    std::minstd_rand generator(mixed);
    return std::generate_canonical<double, 24>(generator);
}

}  // namespace

Board::Board(int number, std::uint8_t address, std::uint64_t seed)
    : number(number)
    , seed(seed)
    , ownAddress(address) {
    for (const ModuleRef& ref : K7Q::modules())
        if (const auto factory = ModuleValue::factory(ref)) settings[ref.index] = factory->encoded();
}

std::optional<Frame> Board::answer(const Frame& request, double seconds) {
    switch (request.function().value_or(Fun::groupSet)) {
    case Fun::linkStatus:
        return reply(Fun::linkStatus, Bytes(8));
    case Fun::devInfo:
        return identity();
    case Fun::moduleGet:
        return moduleReply(moduleOf(request), seconds);
    case Fun::moduleSet:
        return changeModule(request);
    case Fun::presetInfoGet:
        return presetDirectory();
    case Fun::presetName:
        return presetName(request);
    case Fun::presetSave:
    case Fun::presetLoad:
    case Fun::presetDelete:
        return changePreset(request);
    case Fun::netStart:
        beginAddressing();
        return acknowledge(request, accepted);
    case Fun::netAddressSet:
        takeAddress(u8(request.payload, 0));
        return acknowledge(request, accepted);
    default:
        return std::nullopt;
    }
}

Frame Board::acknowledge(const Frame& request, std::uint8_t status) const {
    return reply(Fun::ack, {status, request.fun, 0, 0});
}

void Board::beginAddressing() {
    ownAddress = 0;
    addressing = true;
}

void Board::takeAddress(std::uint8_t address) {
    ownAddress = address;
    addressing = false;
}

ModuleValue Board::value(std::uint8_t module) const {
    return ModuleValue::decode(K7Q::module(module).value().kind, stored(module)).value();
}

void Board::store(std::uint8_t module, const ModuleValue& value) { settings.at(module) = value.encoded(); }

Frame Board::reply(Fun fun, Bytes payload) const {
    return {K7Q::productID, ownAddress, fun, std::move(payload)};
}

Frame Board::identity() const {
    const auto serial = static_cast<std::uint32_t>(4000 + number);
    Bytes payload{K7Q::productID, ownAddress, 0, 0, 0, 0, 0, 0, 1, 4, 0x02, 0x01,  // version 1.4.258
                  0xE8,           0x07,       3, 7};                               // 2024-03-07
    payload.resize(28);
    std::ranges::copy(modelName, payload.begin() + 16);
    appendU32(payload, 2407);
    appendU32(payload, serial);
    return reply(Fun::devInfo, std::move(payload));
}

Frame Board::moduleReply(std::uint8_t module, double seconds) const {
    Bytes payload{0, module, 0, 0};
    if (const auto found = settings.find(module); found != settings.end()) {
        append(payload, found->second);
        return reply(Fun::moduleGet, std::move(payload));
    }
    // A read of the first meter returns all six levels; of another meter, its own level.
    const auto all = levels(seconds);
    if (module == K7Q::meterIndex)
        for (const float level : all)
            appendF32(payload, level);
    else
        appendF32(payload, all.at(module - K7Q::meterIndex));
    return reply(Fun::moduleGet, std::move(payload));
}

Frame Board::changeModule(const Frame& request) {
    const auto found = settings.find(moduleOf(request));
    if (found == settings.end()) return acknowledge(request, refused);
    found->second.assign(request.payload.begin() + headerBytes, request.payload.end());
    return acknowledge(request, accepted);
}

Frame Board::presetDirectory() const {
    std::uint32_t validMask = 0;
    for (std::size_t slot = 0; slot < presets.size(); ++slot)
        if (presets[slot]) validMask |= std::uint32_t{1} << slot;
    Bytes payload;
    appendU32(payload, 0);
    appendU32(payload, validMask);
    appendU32(payload, currentPreset);
    return reply(Fun::presetInfoGet, std::move(payload));
}

Frame Board::presetName(const Frame& request) const {
    const std::uint32_t slot = u32(request.payload, 0);
    Bytes payload;
    appendU32(payload, slot);
    const bool stored = slot < presets.size() && presets[slot];
    const Bytes name = stored ? presets[slot]->name : Bytes(nameBytes, ' ');
    append(payload, name);
    return reply(Fun::presetName, std::move(payload));
}

Frame Board::changePreset(const Frame& request) {
    const std::uint32_t argument = u32(request.payload, 0);
    if (request.function() == Fun::presetDelete) {
        for (std::size_t slot = 0; slot < presets.size(); ++slot)
            if (argument >> slot & 1) presets[slot].reset();
        return acknowledge(request, accepted);
    }
    if (argument >= presets.size()) return acknowledge(request, refused);
    auto& preset = presets[argument];
    if (request.function() == Fun::presetSave)
        preset = Preset{Bytes(request.payload.begin() + headerBytes, request.payload.end()), settings};
    else if (preset)
        settings = preset->settings;
    else
        return acknowledge(request, refused);
    currentPreset = argument;
    return acknowledge(request, accepted);
}

// About -26 dB: it swells by 4 dB every 7.3 s, a beat twice a second decays, and up to 2 dB change
// at random 16 times a second.
float Board::musicLevel(std::size_t input, double seconds) const {
    constexpr double beatSeconds = 0.5;
    const auto beat = static_cast<std::uint64_t>(seconds / beatSeconds);
    const double sinceBeat = seconds / beatSeconds - static_cast<double>(beat);
    const double swell = 4 * std::sin(2 * std::numbers::pi *
                                      (seconds / 7.3 + 0.13 * static_cast<double>(input) + 0.29 * number));
    const double hit =
        9 * std::exp(-4 * sinceBeat) * (0.5 + chance(seed + static_cast<std::uint64_t>(number), input, beat));
    const double ripple = 2 * chance(seed, 7 + input, static_cast<std::uint64_t>(seconds * 16));
    return static_cast<float>(-26 + swell + hit + ripple);
}

std::array<float, 6> Board::levels(double seconds) const {
    std::array<float, 6> all{};
    const auto afterGain = [this](std::string_view channel, float level) {
        const ModuleValue held = value(K7Q::index(ModuleKind::gain, channel, 0));
        const auto* gain = held.as<GainValue>();
        return gain->mute ? silence : level + gain->db;
    };
    for (std::size_t in = 0; in < K7Q::inputs.size(); ++in)
        all[in] = std::max(silence, afterGain(K7Q::inputs[in], musicLevel(in, seconds)));
    for (std::size_t out = 0; out < K7Q::outputs.size(); ++out) {
        float sum = silence;
        for (std::size_t in = 0; in < K7Q::inputs.size(); ++in) {
            const std::string crosspoint =
                std::string(K7Q::inputs[in]) + "-" + std::string(K7Q::outputs[out]);
            const ModuleValue held = value(K7Q::index(ModuleKind::mixer, crosspoint, 0));
            const auto* mixer = held.as<MixerValue>();
            if (!mixer->mute) sum = powerSum(sum, all[in] + mixer->db);
        }
        all[K7Q::inputs.size() + out] = std::max(silence, afterGain(K7Q::outputs[out], sum));
    }
    return all;
}

}  // namespace Simulator
