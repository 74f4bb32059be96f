#pragma once

#include "Wendril/client.hpp"

#include <complex>
#include <string>
#include <vector>

namespace Cli {

/// A curve over `curveFrequencies()`.
struct Curve {
    std::string name;
    std::vector<std::complex<double>> factors;

    std::vector<double> db() const;
    std::vector<double> degrees() const;  // -180 to 180
};

const std::vector<double>& curveFrequencies();

/// The modules that shape a channel's curve. With `level`, also those that matter where outputs add:
/// gain and delay. Throws std::invalid_argument for a channel that the board lacks.
std::vector<Wendril::ModuleRef> curveModules(const std::string& channel, bool level);

/// The filters of a channel, or with `level` also its gain, mute, polarity and delay.
Curve curveOf(const std::string& channel, const Wendril::ModuleValues& values, bool level);

Curve sumOf(const std::vector<Curve>& curves);

/// A drawing of the curves: 20 Hz to 20 kHz, -18 to 18 dB as in the window, with the name of each.
std::string svgOf(const std::vector<Curve>& curves);

}  // namespace Cli
