#pragma once

#include <cstdint>
#include <optional>
#include <vector>

// The digital filters of the board, section by section. Internal to the filter mathematics.
namespace Wendril::FilterMath {

/// H(z) = (b0 + b1/z + b2/z²) / (1 + a1/z + a2/z²); b2 = a2 = 0 in a section of first order.
struct Section {
    double b0;
    double b1;
    double b2;
    double a1;
    double a2;
};

/// The cascade of a crossover filter; empty for a code without sections (above 15).
std::vector<Section> passSections(bool highPass, double fc, std::uint8_t code);

/// The biquad of an equaliser band; none for a type that is no PeqType.
std::optional<Section> peqCoefficients(double fc, double gain, double q, std::uint8_t type);

}  // namespace Wendril::FilterMath
