#pragma once

#include "Wendril/limits.hpp"
#include "Wendril/values.hpp"

namespace Corvane {

/// The limits of a field of an equaliser band; they are the same for every channel.
constexpr Wendril::Limits bandLimits(std::string_view field) {
    return Wendril::limitsOf(Wendril::ModuleKind::peq, field, "");
}

/// Stands for a band for which the board has reported another kind of value.
constexpr Wendril::PeqValue neutralBand{.fc = static_cast<std::uint32_t>(bandLimits("fc").standard),
                                        .gain = static_cast<float>(bandLimits("gain").standard),
                                        .q = static_cast<float>(bandLimits("q").standard)};

/// Gain and Q within their limits. A NaN becomes the default.
Wendril::PeqValue limitedGainAndQ(Wendril::PeqValue band);

/// Frequency, gain and Q within their limits.
Wendril::PeqValue limited(Wendril::PeqValue band);

}  // namespace Corvane
