#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Wendril {

/// What a module of the board is. A meter (`vu`) is read-only; all others hold a value.
enum class ModuleKind : std::uint8_t {
    gain,
    peq,
    hpf,
    lpf,
    compressor,
    limiter,
    limiterBypass,
    gate,
    gateBypass,
    mixer,
    delay,
    vu,
};

/// The twelve kinds in declaration order, with their raw values: their names in the module map
/// ("RMS_DRC").
struct ModuleKindName {
    ModuleKind kind;
    std::string_view name;
};
extern const std::array<ModuleKindName, 12> moduleKindNames;

std::string_view nameOf(ModuleKind kind);

/// The kind of that raw value, its exact name in the module map; none for any other text.
std::optional<ModuleKind> moduleKindFromRaw(std::string_view raw);

/// One module of the board.
struct ModuleRef {
    ModuleKind kind = ModuleKind::gain;
    std::string channel;     // "In0", "In1", "Out0" to "Out3"; a crosspoint: "In1-Out2"
    std::uint8_t index = 0;  // module number on the wire, 1 to 98
    int band = 0;            // equaliser band from 0; 0 for all other modules

    bool operator==(const ModuleRef&) const = default;
};

/// "GAIN/In0", "PEQ/Out2/4": how logs and the command line write a module.
std::string labelOf(const ModuleRef& ref);

/// The fixed description of the K7Q board. Everything here is constant and may be read from any
/// thread.
namespace K7Q {

constexpr std::uint8_t productID = 9;
constexpr int baudRate = 115200;

constexpr std::array<std::string_view, 2> inputs{"In0", "In1"};
constexpr std::array<std::string_view, 4> outputs{"Out0", "Out1", "Out2", "Out3"};

/// Order of the levels in a meter reading, and number of the first of their six modules.
constexpr std::array<std::string_view, 6> meterChannels{"In0", "In1", "Out0", "Out1", "Out2", "Out3"};
constexpr std::uint8_t meterIndex = 93;

/// Times that the board accepts for hold, attack and release, in ms, ascending: 1 to 95, then
/// 8685.89 / k for k = 90 down to 3, rounded (8685.89 is a thousand times the decibels of a neper).
constexpr auto timeSteps = [] {
    std::array<std::uint32_t, 183> steps{};
    std::size_t n = 0;
    for (std::uint32_t ms = 1; ms <= 95; ++ms)
        steps[n++] = ms;
    for (std::uint32_t k = 90; k >= 3; --k)
        steps[n++] = (2 * 868589 / k + 100) / 200;
    return steps;
}();

/// All 98 modules, numbers 1 to 98 in order.
const std::vector<ModuleRef>& modules();

/// The module of that number; none for 0 and for 99 and above.
std::optional<ModuleRef> module(std::uint8_t index);

/// The number of a module. A kind, channel and band that the board lacks stop the program.
std::uint8_t index(ModuleKind kind, std::string_view channel, int band);

/// The entry of `timeSteps` closest to `ms`; of two equally close ones the smaller, and 1 for what is
/// not a number.
std::uint32_t nearestTime(double ms);

}  // namespace K7Q

}  // namespace Wendril

template <>
struct std::hash<Wendril::ModuleRef> {
    std::size_t operator()(const Wendril::ModuleRef& ref) const noexcept;
};
