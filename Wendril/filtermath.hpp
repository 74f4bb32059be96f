#pragma once

#include "Wendril/values.hpp"

#include <array>
#include <complex>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The board's filters as the host draws them. Pure computation, from any thread. Frequencies are
/// in Hz, levels in dB.
namespace Wendril::FilterMath {

constexpr double sampleRate = 48000;

/// A selectable slope of a crossover filter: the code in FilterValue::type and its name.
struct Slope {
    std::uint8_t code;
    std::string_view name;
};

/// In the order of the menu.
extern const std::array<Slope, 14> slopes;

/// "Tipo " and the code for one that has no name.
std::string slopeName(std::uint8_t code);

struct Crossover {
    std::optional<FilterValue> highPass;
    std::optional<FilterValue> lowPass;

    bool operator==(const Crossover&) const = default;
};

/// `count` frequencies evenly spaced on a logarithmic scale, both ends included. A single one has
/// no spacing and is not a number.
std::vector<double> frequencies(std::size_t count, double from, double to);

/// Magnitude at each frequency of `at`, in its order, never below -120 dB: all bands and filters
/// that are not bypassed. Any values may come, also corner frequencies above half the sample rate
/// and floats that are not finite.
std::vector<double> response(std::span<const PeqValue> peq, const Crossover& crossover,
                             std::span<const double> at);

/// The same with phase, as a factor of the signal; a level below -120 dB stays as it is.
std::vector<std::complex<double>> complexResponse(std::span<const PeqValue> peq, const Crossover& crossover,
                                                  std::span<const double> at);

}  // namespace Wendril::FilterMath
