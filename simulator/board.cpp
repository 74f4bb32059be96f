#include "simulator/board.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <utility>

namespace Simulator {

using namespace Wendril;

namespace {

constexpr std::size_t headerBytes = 4;  // of a module payload
constexpr std::size_t nameBytes = 20;   // of a preset
constexpr std::string_view modelName = "K7Q-112A";
constexpr float silence = -120;  // lowest level that a meter shows

// Version 1.4.258, 2024-03-07.
constexpr std::array<std::uint8_t, 8> usualRelease{1, 4, 0x02, 0x01, 0xE8, 0x07, 3, 7};

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

std::uint32_t numberIn(std::string_view digits) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size())
        throw std::invalid_argument("\"" + std::string(digits) + "\" is no number of a board");
    return number;
}

// "1.4.258" or "2024-03-07".
std::array<std::uint32_t, 3> numbersIn(std::string_view text, char separator) {
    const std::size_t first = std::min(text.find(separator), text.size());
    const std::size_t second = std::min(text.find(separator, first + 1), text.size());
    if (second == text.size())
        throw std::invalid_argument("\"" + std::string(text) + "\" is no version or date");
    return {numberIn(text.substr(0, first)), numberIn(text.substr(first + 1, second - first - 1)),
            numberIn(text.substr(second + 1))};
}

// A board reports its serial number as two numbers, which are written one after the other. Any two that
// are written so will do.
std::pair<std::uint32_t, std::uint32_t> serialNumbers(const std::string& serial) {
    for (std::size_t cut = 1; cut < serial.size(); ++cut) {
        const std::string high = serial.substr(0, cut);
        const std::string low = serial.substr(cut);
        if (low.size() > 9 || high.size() > 9) continue;
        if (std::to_string(numberIn(high)) == high && std::to_string(numberIn(low)) == low)
            return {numberIn(high), numberIn(low)};
    }
    throw std::invalid_argument("\"" + serial + "\" is no serial number of a board");
}

}  // namespace

Board::Board(int number, std::uint8_t address, std::uint64_t seed)
    : number(number)
    , seed(seed)
    , who{usualRelease, std::string(modelName), 2407, static_cast<std::uint32_t>(4000 + number)}
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
    Bytes payload{K7Q::productID, ownAddress, 0, 0, 0, 0, 0, 0};
    append(payload, who.release);
    payload.resize(28);
    std::copy_n(who.model.begin(), std::min<std::size_t>(who.model.size(), 12), payload.begin() + 16);
    appendU32(payload, who.serialHigh);
    appendU32(payload, who.serialLow);
    return reply(Fun::devInfo, std::move(payload));
}

DeviceInfo Board::info() const { return DeviceInfo::parse(identity().payload).value(); }

void Board::assume(const DeviceInfo& info) {
    const auto version = numbersIn(info.version, '.');
    const auto date = numbersIn(info.date, '-');
    const auto byte = [](std::uint32_t value) { return static_cast<std::uint8_t>(value & 0xFF); };
    who.release = {byte(version[0]), byte(version[1]),   byte(version[2]), byte(version[2] >> 8),
                   byte(date[0]),    byte(date[0] >> 8), byte(date[1]),    byte(date[2])};
    who.model = info.model;
    std::tie(who.serialHigh, who.serialLow) = serialNumbers(info.serial);
    ownAddress = info.address;
    DeviceInfo held = this->info();
    held.product = info.product;
    if (held != info)
        throw std::invalid_argument("no board can be " + info.model + " " + info.version + " of " +
                                    info.date);
}

void Board::storePreset(std::size_t slot, std::string_view name) {
    Bytes field(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(std::min(name.size(), nameBytes)));
    field.resize(nameBytes, ' ');
    presets.at(slot) = Preset{std::move(field), settings};
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
