#include "Wendril/sections.hpp"

#include "Wendril/filtermath.hpp"

#include <array>
#include <cmath>
#include <numbers>
#include <span>

namespace Wendril::FilterMath {

using std::numbers::pi;

namespace {

// Each cascade as the dampings (1/Q) of its second-order sections, then the coefficients of its
// first-order ones. A Linkwitz slope is a Butterworth filter twice; that of 36 dB is one of fourth order
// and one of second.
struct Cascade {
    std::span<const double> second;
    std::span<const double> first;
};

constexpr std::array<double, 2> unity{1.0, 1.0};
constexpr std::array<double, 2> butterworth2{1.41421356237309, 1.41421356237309};
constexpr std::array<double, 1> butterworth3{1.0};
constexpr std::array<double, 4> butterworth4{0.76536686473018, 1.84775906502257, 0.76536686473018,
                                             1.84775906502257};
constexpr std::array<double, 3> butterworth6{0.51763809020504, 1.41421356237309, 1.93185165257814};
constexpr std::array<double, 4> butterworth8{0.39018064403226, 1.1111404660392, 1.66293922460509,
                                             1.96157056080646};
constexpr std::array<double, 1> bessel2{1.73205080756888};
constexpr std::array<double, 1> bessel3{1.49128077169616};
constexpr std::array<double, 1> bessel3First{0.94160002653321};
constexpr std::array<double, 2> bessel4{1.31442234334377, 1.80951759357649};
constexpr std::array<double, 3> bessel6{1.81878136609445, 1.59930837166566, 1.07710536333862};
constexpr std::array<double, 4> bessel8{1.81936630933058, 1.69465016047187, 1.42227636169708,
                                        0.92434808250642};
constexpr std::array<double, 3> linkwitz36{0.76536686473018, 1.84775906502257, 1.41421356237309};

// By slope code; bessel 6 dB (1) and bessel 18 dB (6) are not in the menu.
Cascade cascadeOf(std::uint8_t code) {
    const std::span one = std::span(unity).first(1);
    switch (code) {
    case 0:
        return {{}, one};
    case 1:
        return {{}, one};
    case 2:
        return {std::span(butterworth2).first(1), {}};
    case 3:
        return {bessel2, {}};
    case 4:
        return {{}, unity};
    case 5:
        return {butterworth3, one};
    case 6:
        return {bessel3, bessel3First};
    case 7:
        return {std::span(butterworth4).first(2), {}};
    case 8:
        return {bessel4, {}};
    case 9:
        return {butterworth2, {}};
    case 10:
        return {butterworth6, {}};
    case 11:
        return {bessel6, {}};
    case 12:
        return {linkwitz36, {}};
    case 13:
        return {butterworth8, {}};
    case 14:
        return {bessel8, {}};
    case 15:
        return {butterworth4, {}};
    default:
        return {};
    }
}

// `k` is the tangent of the pre-warped corner.
Section secondOrder(bool highPass, double k, double d) {
    const double n = 1 + d * k + k * k;
    const double a1 = 2 * (k * k - 1) / n;
    const double a2 = (1 - d * k + k * k) / n;
    if (highPass) return {1 / n, -2 / n, 1 / n, a1, a2};
    return {k * k / n, 2 * k * k / n, k * k / n, a1, a2};
}

Section firstOrder(bool highPass, double k, double c) {
    if (highPass) {
        const double m = k + c;
        return {c / m, -c / m, 0, (k - c) / m, 0};
    }
    const double m = c * k + 1;
    return {c * k / m, c * k / m, 0, (c * k - 1) / m, 0};
}

}  // namespace

std::vector<Section> passSections(bool highPass, double fc, std::uint8_t code) {
    const double k = std::tan(pi * fc / sampleRate);
    const Cascade cascade = cascadeOf(code);
    std::vector<Section> sections;
    for (const double d : cascade.second)
        sections.push_back(secondOrder(highPass, k, d));
    for (const double c : cascade.first)
        sections.push_back(firstOrder(highPass, k, c));
    return sections;
}

// The biquads of the Audio EQ Cookbook in their Q forms.
std::optional<Section> peqCoefficients(double fc, double gain, double q, std::uint8_t type) {
    constexpr double lowestQ = 0.05;
    const double amplitude = std::pow(10, gain / 40);
    const double w0 = 2 * pi * fc / sampleRate;
    const double alpha = std::sin(w0) / (2 * (q <= lowestQ ? lowestQ : q));
    const double cosine = std::cos(w0);
    const auto normalised = [](double b0, double b1, double b2, double a0, double a1, double a2) {
        return Section{b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
    };
    const auto shape = peqTypeFromRaw(type);
    if (!shape) return std::nullopt;
    if (*shape == PeqType::peak)
        return normalised(1 + alpha * amplitude, -2 * cosine, 1 - alpha * amplitude,  //
                          1 + alpha / amplitude, -2 * cosine, 1 - alpha / amplitude);

    // The high shelf is the low shelf mirrored at half the Nyquist frequency.
    const double side = *shape == PeqType::lowShelf ? 1 : -1;
    const double above = amplitude + 1;
    const double below = amplitude - 1;
    const double c = side * cosine;
    const double slope = 2 * std::sqrt(amplitude) * alpha;
    return normalised(amplitude * (above - below * c + slope), side * 2 * amplitude * (below - above * c),
                      amplitude * (above - below * c - slope), above + below * c + slope,
                      side * -2 * (below + above * c), above + below * c - slope);
}

}  // namespace Wendril::FilterMath
