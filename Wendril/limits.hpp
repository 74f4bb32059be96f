#pragma once

#include "Wendril/profile.hpp"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <type_traits>

// The ranges, defaults and steps of the board's settings, for the library and every program on it.
namespace Wendril {

/// The range of one number in a module's value, its default and the step by which a control changes it.
/// The step is 0 for a time, which takes the values of K7Q::timeSteps.
struct Limits {
    double lowest;
    double highest;
    double standard;  // the default
    double step;
    std::string_view unit;  // "dB", "Hz", "ms"; empty for a plain number
};

/// Whether a channel is an input. A crosspoint ("In1-Out2") is not.
constexpr bool isInput(std::string_view channel) {
    return channel == K7Q::inputs[0] || channel == K7Q::inputs[1];
}

/// The slots of a board's preset memory that the program offers. Slot 0 is the board's own.
constexpr int firstPresetSlot = 1;
constexpr int lastPresetSlot = 31;

/// A board stores that many bytes of the name of a preset.
constexpr std::size_t presetNameBytes = 20;

namespace detail {

enum class Side { both, inputs, outputs };

// The order is that of a row of the table below.
struct LimitsRow {  // NOLINT(clang-analyzer-optin.performance.Padding): few, and constant
    ModuleKind kind;
    std::string_view field;
    Limits limits;
    Side side = Side::both;
};

constexpr Limits holdTime{0, K7Q::timeSteps.back(), 0, 0, "ms"};
constexpr Limits attackTime{1, K7Q::timeSteps.back(), 45, 0, "ms"};
constexpr Limits releaseTime{1, K7Q::timeSteps.back(), 724, 0, "ms"};

// The bands of an equaliser have different default frequencies (ModuleValue::factory). The one here
// stands for a band whose value is not known.
constexpr LimitsRow limitsTable[] = {
    {ModuleKind::gain, "db", {-60, 6, 0, 0.1, "dB"}, Side::inputs},
    {ModuleKind::gain, "db", {-60, 15, 0, 0.1, "dB"}, Side::outputs},
    {ModuleKind::peq, "fc", {20, 22000, 1000, 1, "Hz"}},
    {ModuleKind::peq, "gain", {-12, 12, 0, 0.1, "dB"}},
    {ModuleKind::peq, "q", {0.3, 50, 3, 0.01, ""}},
    {ModuleKind::hpf, "fc", {20, 22000, 20, 1, "Hz"}},
    {ModuleKind::lpf, "fc", {20, 22000, 22000, 1, "Hz"}},
    {ModuleKind::compressor, "threshold", {-20, 22, 22, 0.5, "dB"}},
    {ModuleKind::compressor, "ratio", {1, 20, 1, 0.1, ""}},
    {ModuleKind::compressor, "hold", holdTime},
    {ModuleKind::compressor, "attack", attackTime},
    {ModuleKind::compressor, "release", releaseTime},
    {ModuleKind::compressor, "knee", {0, 30, 0, 1, "dB"}},
    {ModuleKind::limiter, "threshold", {-20, 24, 24, 0.5, "dB"}},
    {ModuleKind::limiter, "ratio", {1, 100, 1, 0.1, ""}},
    {ModuleKind::limiter, "hold", holdTime},
    {ModuleKind::limiter, "release", releaseTime},
    {ModuleKind::limiter, "knee", {0, 30, 0, 1, "dB"}},
    {ModuleKind::gate, "threshold", {-120, -60, -120, 1, "dB"}},
    {ModuleKind::gate, "ratio", {1, 100, 100, 0.1, ""}},
    {ModuleKind::gate, "hold", holdTime},
    {ModuleKind::gate, "attack", attackTime},
    {ModuleKind::gate, "release", releaseTime},
    {ModuleKind::gate, "knee", {0, 30, 0, 1, "dB"}},
    {ModuleKind::mixer, "db", {-60, 6, 0, 0.1, "dB"}},
    {ModuleKind::delay, "ms", {0, 5, 0, 0.01, "ms"}},
};

}  // namespace detail

/// Whether a field of a module's value, as `forEachField` visits them, has limits: a number does, a
/// switch or a type code (a byte) does not.
template <class Field>
constexpr bool isLimited = std::is_same_v<Field, float> || std::is_same_v<Field, std::uint32_t>;

/// The limits of a field of that kind of module, by the name that `forEachField` gives it. For a name
/// that is no number of that kind a constant expression does not compile, and a call throws
/// std::invalid_argument.
constexpr Limits limitsOf(ModuleKind kind, std::string_view field, std::string_view channel) {
    for (const detail::LimitsRow& row : detail::limitsTable) {
        if (row.kind != kind || row.field != field) continue;
        if (row.side != detail::Side::both && isInput(channel) != (row.side == detail::Side::inputs))
            continue;
        return row.limits;
    }
    throw std::invalid_argument("no number of this kind of module has that name");
}

}  // namespace Wendril
