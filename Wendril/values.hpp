#pragma once

#include "Wendril/frame.hpp"
#include "Wendril/profile.hpp"

#include <cstdint>
#include <optional>
#include <variant>

// The settings of the board's modules. Levels are in dB, frequencies in Hz, times in ms.
namespace Wendril {

struct GainValue {
    float db = 0;
    bool mute = false;
    bool phaseNormal = false;  // false inverts the polarity
    bool operator==(const GainValue&) const = default;
};

enum class PeqType : std::uint8_t { peak = 0, lowShelf = 1, highShelf = 2 };

/// The shape of that raw value; none from 3 up.
std::optional<PeqType> peqTypeFromRaw(std::uint8_t raw);

struct PeqValue {
    std::uint32_t fc = 0;  // centre or corner
    float gain = 0;
    float q = 0;
    std::uint8_t type = 0;  // raw PeqType; any byte is kept and sent as it is
    bool bypass = false;
    bool operator==(const PeqValue&) const = default;
};

struct FilterValue {
    std::uint32_t fc = 0;
    std::uint8_t type = 0;  // slope code, see FilterMath::slopes
    bool bypass = false;
    bool operator==(const FilterValue&) const = default;
};

/// Compressor and noise gate. Times are entries of K7Q::timeSteps; ratio 1 means no action.
struct DynamicsValue {
    float threshold = 0;
    float ratio = 0;
    std::uint32_t hold = 0;
    std::uint32_t attack = 0;
    std::uint32_t release = 0;
    std::uint32_t knee = 0;
    bool operator==(const DynamicsValue&) const = default;
};

struct LimiterValue {
    float threshold = 0;
    float ratio = 0;
    std::uint32_t hold = 0;
    std::uint32_t release = 0;
    std::uint32_t knee = 0;
    bool operator==(const LimiterValue&) const = default;
};

/// One crosspoint: the level of an input in an output.
struct MixerValue {
    float db = 0;
    bool mute = false;
    bool phaseNormal = false;
    bool operator==(const MixerValue&) const = default;
};

struct DelayValue {
    float ms = 0;
    bool bypass = false;
    bool operator==(const DelayValue&) const = default;
};

/// The settings of any module. Filters hold a `FilterValue`, compressor and gate a
/// `DynamicsValue`, the bypass switches a `bool` (true = bypassed); a meter holds none.
struct ModuleValue {
    using Cases = std::variant<GainValue, PeqValue, FilterValue, DynamicsValue, LimiterValue, bool,
                               MixerValue, DelayValue>;
    Cases value;

    /// The default of a module; none for a meter. The band must be one that the channel has.
    static std::optional<ModuleValue> factory(const ModuleRef& ref);

    /// The value in a module reply, after its 4-byte header; bytes beyond the record are ignored.
    /// None when they are too few or the kind is `vu`.
    static std::optional<ModuleValue> decode(ModuleKind kind, ByteView bytes);

    /// The record on the wire: a whole number of 32-bit words, little-endian.
    Bytes encoded() const;

    /// The value as that case, or null.
    template <class Case>
    const Case* as() const {
        return std::get_if<Case>(&value);
    }

    bool operator==(const ModuleValue&) const = default;
};

}  // namespace Wendril
