#include "Wendril/values.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/limits.hpp"
#include "Wendril/runtime/contract.hpp"

#include <array>
#include <span>

namespace Wendril {

namespace {

// Bytes of each value on the wire; a shorter reply is not a value. A meter has none.
std::size_t wireSize(ModuleKind kind) {
    switch (kind) {
    case ModuleKind::limiterBypass:
    case ModuleKind::gateBypass:
        return 4;
    case ModuleKind::gain:
    case ModuleKind::hpf:
    case ModuleKind::lpf:
    case ModuleKind::mixer:
    case ModuleKind::delay:
        return 8;
    case ModuleKind::peq:
        return 16;
    case ModuleKind::limiter:
        return 20;
    case ModuleKind::compressor:
    case ModuleKind::gate:
        return 24;
    case ModuleKind::vu:
        break;
    }
    return 0;
}

constexpr std::array<std::uint32_t, 4> inputBands{81, 329, 1336, 5422};
constexpr std::array<std::uint32_t, 10> outputBands{38, 71, 135, 255, 482, 912, 1724, 3258, 6158, 11639};

std::uint32_t defaultFrequency(const ModuleRef& ref) {
    const std::span<const std::uint32_t> bands =
        isInput(ref.channel) ? std::span<const std::uint32_t>(inputBands) : outputBands;
    if (ref.band < 0 || static_cast<std::size_t>(ref.band) >= bands.size())
        contractBroken("the equaliser of " + ref.channel + " has no band " + std::to_string(ref.band));
    return bands[static_cast<std::size_t>(ref.band)];
}

// By default In0 feeds Out0 and Out2, In1 feeds Out1 and Out3.
bool routedByDefault(std::string_view crosspoint) {
    constexpr std::array<std::string_view, 4> open{"In0-Out0", "In1-Out1", "In0-Out2", "In1-Out3"};
    for (const std::string_view name : open)
        if (name == crosspoint) return true;
    return false;
}

// The default of a module with its numbers still 0: what is not in the table of limits.
std::optional<ModuleValue> switchesByDefault(const ModuleRef& ref) {
    constexpr std::uint8_t bessel12 = 3;  // slope code
    switch (ref.kind) {
    case ModuleKind::gain:
        return ModuleValue{GainValue{.phaseNormal = true}};
    case ModuleKind::peq:
        return ModuleValue{PeqValue{.type = static_cast<std::uint8_t>(PeqType::peak)}};
    case ModuleKind::hpf:
    case ModuleKind::lpf:
        return ModuleValue{FilterValue{.type = bessel12, .bypass = true}};
    case ModuleKind::compressor:
    case ModuleKind::gate:
        return ModuleValue{DynamicsValue{}};
    case ModuleKind::limiter:
        return ModuleValue{LimiterValue{}};
    case ModuleKind::limiterBypass:
    case ModuleKind::gateBypass:
        return ModuleValue{true};
    case ModuleKind::mixer:
        return ModuleValue{MixerValue{.mute = !routedByDefault(ref.channel), .phaseNormal = true}};
    case ModuleKind::delay:
        return ModuleValue{DelayValue{.bypass = true}};
    case ModuleKind::vu:
        break;
    }
    return std::nullopt;
}

// Builds one record, field by field.
class Encoder {
public:
    Encoder& word(std::uint32_t value) {
        appendU32(bytes, value);
        return *this;
    }

    Encoder& number(float value) {
        appendF32(bytes, value);
        return *this;
    }

    // The byte-sized fields at the end of a record share one word.
    Encoder& flags(std::uint8_t first, std::uint8_t second = 0) {
        bytes.insert(bytes.end(), {first, second, 0, 0});
        return *this;
    }

    Bytes bytes;
};

struct Encoding {
    Bytes operator()(const GainValue& v) const {
        return Encoder().number(v.db).flags(v.mute, v.phaseNormal).bytes;
    }
    Bytes operator()(const PeqValue& v) const {
        return Encoder().word(v.fc).number(v.gain).number(v.q).flags(v.type, v.bypass).bytes;
    }
    Bytes operator()(const FilterValue& v) const {
        return Encoder().word(v.fc).flags(v.type, v.bypass).bytes;
    }
    Bytes operator()(const DynamicsValue& v) const {
        return Encoder()
            .number(v.threshold)
            .number(v.ratio)
            .word(v.hold)
            .word(v.attack)
            .word(v.release)
            .word(v.knee)
            .bytes;
    }
    Bytes operator()(const LimiterValue& v) const {
        return Encoder().number(v.threshold).number(v.ratio).word(v.hold).word(v.release).word(v.knee).bytes;
    }
    Bytes operator()(bool v) const { return Encoder().word(v ? 1 : 0).bytes; }
    Bytes operator()(const MixerValue& v) const {
        return Encoder().number(v.db).flags(v.mute, v.phaseNormal).bytes;
    }
    Bytes operator()(const DelayValue& v) const { return Encoder().number(v.ms).flags(v.bypass).bytes; }
};

}  // namespace

std::optional<PeqType> peqTypeFromRaw(std::uint8_t raw) {
    if (raw > static_cast<std::uint8_t>(PeqType::highShelf)) return std::nullopt;
    return static_cast<PeqType>(raw);
}

std::optional<ModuleValue> ModuleValue::factory(const ModuleRef& ref) {
    std::optional<ModuleValue> value = switchesByDefault(ref);
    if (!value) return std::nullopt;
    forEachField(*value, [&ref](const char* name, auto& field) {
        using Field = std::remove_reference_t<decltype(field)>;
        if constexpr (isLimited<Field>)
            field = static_cast<Field>(limitsOf(ref.kind, name, ref.channel).standard);
    });
    if (auto* const band = std::get_if<PeqValue>(&value->value)) band->fc = defaultFrequency(ref);
    return value;
}

std::optional<ModuleValue> ModuleValue::decode(ModuleKind kind, ByteView bytes) {
    if (bytes.size() < wireSize(kind)) return std::nullopt;
    const auto number = [bytes](std::size_t i) { return f32(bytes, i); };
    const auto word = [bytes](std::size_t i) { return u32(bytes, i); };
    const auto flag = [bytes](std::size_t i) { return bytes[i] != 0; };
    switch (kind) {
    case ModuleKind::gain:
        return ModuleValue{GainValue{number(0), flag(4), flag(5)}};
    case ModuleKind::peq:
        return ModuleValue{PeqValue{word(0), number(4), number(8), bytes[12], flag(13)}};
    case ModuleKind::hpf:
    case ModuleKind::lpf:
        return ModuleValue{FilterValue{word(0), bytes[4], flag(5)}};
    case ModuleKind::compressor:
    case ModuleKind::gate:
        return ModuleValue{DynamicsValue{number(0), number(4), word(8), word(12), word(16), word(20)}};
    case ModuleKind::limiter:
        return ModuleValue{LimiterValue{number(0), number(4), word(8), word(12), word(16)}};
    case ModuleKind::limiterBypass:
    case ModuleKind::gateBypass:
        return ModuleValue{word(0) != 0};
    case ModuleKind::mixer:
        return ModuleValue{MixerValue{number(0), flag(4), flag(5)}};
    case ModuleKind::delay:
        return ModuleValue{DelayValue{number(0), flag(4)}};
    case ModuleKind::vu:
        break;
    }
    return std::nullopt;
}

Bytes ModuleValue::encoded() const { return std::visit(Encoding{}, value); }

}  // namespace Wendril
