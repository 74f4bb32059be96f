#include "Wendril/filtermath.hpp"

#include "Wendril/sections.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Wendril::FilterMath {

using std::numbers::pi;

const std::array<Slope, 14> slopes{{
    {0, "Butterworth 6 dB"},
    {2, "Butterworth 12 dB"},
    {5, "Butterworth 18 dB"},
    {7, "Butterworth 24 dB"},
    {10, "Butterworth 36 dB"},
    {13, "Butterworth 48 dB"},
    {3, "Bessel 12 dB"},
    {8, "Bessel 24 dB"},
    {11, "Bessel 36 dB"},
    {14, "Bessel 48 dB"},
    {4, "Linkwitz 12 dB"},
    {9, "Linkwitz 24 dB"},
    {12, "Linkwitz 36 dB"},
    {15, "Linkwitz 48 dB"},
}};

namespace {

// A squared magnitude on the unit circle, |p0 + p1/z + p2/z²|², as a polynomial of
// phi = 4·sin²(w/2). Written through the sum and the difference of the coefficients it keeps its
// digits at low frequencies, where 1 - cos w would lose them.
struct Power {
    double c0;
    double c1;
    double c2;
};

Power powerOf(double p0, double p1, double p2) {
    const double sum = (p0 + p1) + p2;  // in this order both additions are exact where the sum is small
    const double difference = p0 - p2;
    return {sum * sum, difference * difference - sum * (p0 + p2), p0 * p2};
}

// Whether the polynomial is accurate for every phi from 0 to 4. Where its lowest value is much smaller
// than its terms, as in the middle of a narrow band, their rounding errors are all that is left. The
// limit is reached at q = 350 with a gain of 12 dB, where the error is 1e-7 dB.
bool isAccurate(const Power& power) {
    const double lowestAt = -power.c1 / (2 * power.c2);
    if (!(lowestAt > 0 && lowestAt < 4)) return true;
    return power.c0 + power.c1 * lowestAt / 2 >= 2e-6 * power.c0;
}

struct PowerRatio {
    Power numerator;
    Power denominator;
};

struct Filters {
    std::vector<PowerRatio> ratios;
    std::vector<Section> sections;  // those whose polynomials are not accurate enough

    void add(const Section& s) {
        const PowerRatio ratio{powerOf(s.b0, s.b1, s.b2), powerOf(1, s.a1, s.a2)};
        if (isAccurate(ratio.numerator) && isAccurate(ratio.denominator))
            ratios.push_back(ratio);
        else
            sections.push_back(s);
    }

    bool empty() const { return ratios.empty() && sections.empty(); }
};

std::vector<Section> activeSections(std::span<const PeqValue> peq, const Crossover& crossover) {
    std::vector<Section> sections;
    for (const PeqValue& band : peq) {
        if (band.bypass) continue;
        if (const auto section = peqCoefficients(band.fc, band.gain, band.q, band.type))
            sections.push_back(*section);
    }
    const auto addPass = [&sections](bool highPass, const std::optional<FilterValue>& filter) {
        if (!filter || filter->bypass) return;
        const auto cascade = passSections(highPass, filter->fc, filter->type);
        sections.insert(sections.end(), cascade.begin(), cascade.end());
    };
    addPass(true, crossover.highPass);
    addPass(false, crossover.lowPass);
    return sections;
}

// Points are evaluated in blocks, and within a block section after section: so the compiler can compute
// several points with one instruction.
constexpr std::size_t blockPoints = 64;
using Block = std::array<double, blockPoints>;

// So many sections share one division. A factor is 1e-40 at the least (at 1e-5 Hz), so that the product
// of four stays far from underflow.
constexpr std::size_t ratiosPerDivision = 4;

void multiply(Block& numerator, Block& denominator, const Block& phi, const PowerRatio& ratio) {
    const auto [n, d] = ratio;
    for (std::size_t i = 0; i < blockPoints; ++i) {
        numerator[i] *= (n.c2 * phi[i] + n.c1) * phi[i] + n.c0;
        denominator[i] *= (d.c2 * phi[i] + d.c1) * phi[i] + d.c0;
    }
}

Block powersAt(const Block& phi, std::span<const PowerRatio> ratios) {
    Block power;
    power.fill(1);
    while (!ratios.empty()) {
        const auto group = ratios.first(std::min(ratios.size(), ratiosPerDivision));
        Block denominator;
        denominator.fill(1);
        for (const PowerRatio& ratio : group)
            multiply(power, denominator, phi, ratio);
        for (std::size_t i = 0; i < blockPoints; ++i)
            power[i] /= denominator[i];
        ratios = ratios.subspan(group.size());
    }
    return power;
}

// |H|² by its definition, for w = 2·pi·f / sampleRate.
double powerAt(double w, const Section& s) {
    const double c1 = std::cos(w);
    const double c2 = std::cos(2 * w);
    const double s1 = std::sin(w);
    const double s2 = std::sin(2 * w);
    const auto square = [](double x) { return x * x; };
    return (square(s.b0 + s.b1 * c1 + s.b2 * c2) + square(s.b1 * s1 + s.b2 * s2)) /
           (square(1 + s.a1 * c1 + s.a2 * c2) + square(s.a1 * s1 + s.a2 * s2));
}

// The comparison is false for what is not a number, which so becomes -120 dB.
double decibels(double power) {
    constexpr double floor = 1e-12;
    constexpr double scale = 10 / std::numbers::ln10;
    return power > floor ? scale * std::log(power) : -120;
}

}  // namespace

std::string slopeName(std::uint8_t code) {
    for (const Slope& slope : slopes)
        if (slope.code == code) return std::string(slope.name);
    return "Tipo " + std::to_string(code);
}

std::vector<double> frequencies(std::size_t count, double from, double to) {
    const double low = std::log10(from);
    const double high = std::log10(to);
    std::vector<double> list(count);
    for (std::size_t i = 0; i < count; ++i)
        list[i] =
            std::pow(10, low + (high - low) * static_cast<double>(i) / (static_cast<double>(count) - 1));
    return list;
}

std::vector<double> response(std::span<const PeqValue> peq, const Crossover& crossover,
                             std::span<const double> at) {
    std::vector<double> db(at.size());
    Filters filters;
    for (const Section& section : activeSections(peq, crossover))
        filters.add(section);
    if (filters.empty()) return db;
    for (std::size_t from = 0; from < at.size(); from += blockPoints) {
        const std::size_t points = std::min(blockPoints, at.size() - from);
        Block phi{};
        for (std::size_t i = 0; i < points; ++i) {
            const double half = std::sin(pi * at[from + i] / sampleRate);
            phi[i] = 4 * half * half;
        }
        Block power = powersAt(phi, filters.ratios);
        for (const Section& section : filters.sections)
            for (std::size_t i = 0; i < points; ++i)
                power[i] *= powerAt(2 * pi * at[from + i] / sampleRate, section);
        std::transform(power.begin(), power.begin() + points, db.begin() + static_cast<std::ptrdiff_t>(from),
                       decibels);
    }
    return db;
}

std::vector<std::complex<double>> complexResponse(std::span<const PeqValue> peq, const Crossover& crossover,
                                                  std::span<const double> at) {
    const auto sections = activeSections(peq, crossover);
    std::vector<std::complex<double>> factors(at.size(), 1);
    for (std::size_t i = 0; i < at.size(); ++i) {
        const auto z1 = std::polar(1.0, -2 * pi * at[i] / sampleRate);  // 1/z
        for (const Section& s : sections)
            factors[i] *= (s.b0 + z1 * (s.b1 + z1 * s.b2)) / (1.0 + z1 * (s.a1 + z1 * s.a2));
    }
    return factors;
}

}  // namespace Wendril::FilterMath
