#pragma once

#include "Wendril/values.hpp"

namespace Corvane {

/// Stands for a band of which the board has reported something else.
constexpr Wendril::PeqValue neutralBand{.fc = 1000, .gain = 0, .q = 3};

/// What the equaliser takes: -12 to +12 dB, Q from 0.3 to 50. A gain or Q that is no number becomes
/// that of `neutralBand`.
Wendril::PeqValue limitedGainAndQ(Wendril::PeqValue band);

/// That, and 20 to 22000 Hz.
Wendril::PeqValue limited(Wendril::PeqValue band);

}  // namespace Corvane
