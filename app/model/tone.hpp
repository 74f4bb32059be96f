#pragma once

#include "Wendril/values.hpp"

#include <array>
#include <string_view>

namespace Corvane {

/// The tone control: three bands of the inputs' equaliser. Band 1 is not used.
enum class ToneBand { bass, mid, treble };

struct ToneFilter {
    int band;
    std::uint32_t fc;  // Hz
    Wendril::PeqType type;
    float q;
};

constexpr ToneFilter filterOf(ToneBand band) {
    constexpr std::array<ToneFilter, 3> filters{{
        {0, 100, Wendril::PeqType::lowShelf, 0.7F},
        {2, 1000, Wendril::PeqType::peak, 1.0F},
        {3, 8000, Wendril::PeqType::highShelf, 0.7F},
    }};
    return filters.at(static_cast<std::size_t>(band));
}

/// A ready-made tone: gains in dB, `icon` the name of a symbol. No two have the same name.
struct TonePreset {
    std::string_view name;
    std::string_view icon;
    double bass;
    double mid;
    double treble;

    double gain(ToneBand band) const {
        return band == ToneBand::bass ? bass : band == ToneBand::mid ? mid : treble;
    }

    bool operator==(const TonePreset&) const = default;

    static const std::array<TonePreset, 5> all;
};

inline constexpr std::array<TonePreset, 5> TonePreset::all{{
    {"Plano", "minus", 0, 0, 0},
    {"Voz", "mic", -4, 2.5, 1},
    {"Música", "music.note", 3, 0, 2},
    {"Festa", "sparkles", 5, -1.5, 3},
    {"Ao vivo", "music.mic", 2, 1, 1.5},
}};

constexpr std::array<ToneBand, 3> toneBands{ToneBand::bass, ToneBand::mid, ToneBand::treble};

}  // namespace Corvane
