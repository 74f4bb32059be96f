#include "Wendril/filtermath.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

namespace Wendril::FilterMath {
namespace {

using Real = long double;

double at(double frequency, const std::vector<PeqValue>& bands, const Crossover& crossover = {}) {
    return response(bands, crossover, std::vector{frequency}).at(0);
}

// The bilinear transform takes a digital frequency to this analogue one, in any unit; and the digital
// frequency that is a multiple of another on the analogue side.
Real warped(Real f) { return std::tan(std::numbers::pi_v<Real> * f / sampleRate); }
double multiple(double f, Real times) {
    return static_cast<double>(std::atan(times * warped(f)) * sampleRate / std::numbers::pi_v<Real>);
}

// A band as the analogue filter from which the digital one is made, in dB.
double analogue(const PeqValue& band, double frequency) {
    const Real a = std::pow(Real(10), band.gain / Real(40));
    const Real x = std::pow(warped(frequency) / warped(band.fc), 2);
    const Real width = x / (band.q * band.q);
    const auto power = [&](Real from, Real to, Real damping) {
        return (from - to * x) * (from - to * x) + damping * width;
    };
    const Real h = band.type == 0   ? power(1, 1, a * a) / power(1, 1, 1 / (a * a))
                   : band.type == 1 ? a * a * power(a, 1, a) / power(1, a, a)
                                    : a * a * power(1, a, a) / power(a, 1, a);
    return static_cast<double>(10 * std::log10(std::max(h, Real(1e-12))));
}

TEST(FilterMathTest, BandsAreThoseOfTheAnalogueFilters) {
    std::mt19937 random(3);
    const auto pick = [&](double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    };
    const auto grid = frequencies(320, 20, 20000);
    for (int channel = 0; channel < 25; ++channel) {
        std::vector<PeqValue> bands(10);
        for (PeqValue& band : bands)
            band = {static_cast<std::uint32_t>(20 * std::pow(1000, pick(0, 1))),
                    static_cast<float>(pick(-12, 12)), static_cast<float>(pick(0.3, 50)),
                    static_cast<std::uint8_t>(random() % 4), random() % 4 == 0};
        const auto curve = response(bands, {}, grid);
        for (std::size_t i = 0; i < grid.size(); ++i) {
            double expected = 0;
            for (const PeqValue& band : bands)
                if (!band.bypass && band.type < 3) expected += analogue(band, grid[i]);
            ASSERT_NEAR(curve[i], expected, 1e-6);
        }
    }
    // A board may report any q. The narrowest bands are checked at their middle and their flanks.
    for (const float q : {100.0F, 400.0F, 1e4F, 1e6F})
        for (const std::uint8_t type : {0, 1, 2})
            for (const float gain : {-12.0F, 12.0F})
                for (const double offset : {0.0, 0.3, 1.0}) {
                    const PeqValue band{1000, gain, q, type, false};
                    const double resonance = type == 0 ? 1000 : multiple(1000, std::pow(10, gain / 80));
                    const double f = resonance * (1 + offset / q);
                    EXPECT_NEAR(at(f, {band}), analogue(band, f), 1e-6) << q << " " << int{type};
                }
    for (const float q : {0.0F, -3.0F, 0.01F})
        EXPECT_NEAR(at(200, {{1000, 6, q, 0, false}}), analogue({1000, 6, 0.05F, 0, false}, 200), 1e-6);
}

TEST(FilterMathTest, SlopesFallAsTheirFamiliesDo) {
    // In dB at the corner and an octave beyond it, where the octave is that of the analogue filter.
    const struct {
        std::uint8_t code;
        const char* name;
        double atCorner;
        double beyond;
    } rows[] = {
        {0, "Butterworth 6 dB", -3.010, -6.990},
        {2, "Butterworth 12 dB", -3.010, -12.304},
        {5, "Butterworth 18 dB", -3.010, -18.129},
        {7, "Butterworth 24 dB", -3.010, -24.099},
        {10, "Butterworth 36 dB", -3.010, -36.125},
        {13, "Butterworth 48 dB", -3.010, -48.165},
        {3, "Bessel 12 dB", -4.771, -13.222},
        {8, "Bessel 24 dB", -7.526, -25.460},
        {11, "Bessel 36 dB", -9.919, -37.658},
        {14, "Bessel 48 dB", -12.156, -49.854},
        {4, "Linkwitz 12 dB", -6.021, -13.979},
        {9, "Linkwitz 24 dB", -6.021, -24.609},
        {12, "Linkwitz 36 dB", -6.021, -36.404},
        {15, "Linkwitz 48 dB", -6.021, -48.199},
        {1, "Tipo 1", -3.010, -6.990},
        {6, "Tipo 6", -6.751, -19.940},
        {16, "Tipo 16", 0, 0},
        {255, "Tipo 255", 0, 0},
    };
    for (const auto& [code, name, atCorner, beyond] : rows) {
        const FilterValue filter{1000, code, false};
        EXPECT_EQ(slopeName(code), name);
        EXPECT_NEAR(at(1000, {}, {{}, filter}), atCorner, 1e-3) << name;
        EXPECT_NEAR(at(1000, {}, {filter, {}}), atCorner, 1e-3) << name;
        EXPECT_NEAR(at(multiple(1000, 2), {}, {{}, filter}), beyond, 1e-3) << name;
        EXPECT_NEAR(at(multiple(1000, 0.5), {}, {filter, {}}), beyond, 1e-3) << name;
    }
}

TEST(FilterMathTest, WhatIsSwitchedOffChangesNothingAndTheRestAddsUp) {
    const PeqValue band{1000, 6, 1, 0, false};
    const FilterValue filter{1000, 7, false};
    EXPECT_EQ(at(1000, {}), 0.0);
    EXPECT_EQ(at(1000, {{1000, 6, 1, 0, true}, {1000, 6, 1, 3, false}}), 0.0);
    EXPECT_EQ(at(30, {}, {FilterValue{1000, 7, true}, FilterValue{20, 7, true}}), 0.0);
    EXPECT_NEAR(at(1000, {{1000, 0, 1, 0, false}}), 0, 1e-12);
    EXPECT_NEAR(at(1000, {band, band}, {filter, filter}), 12 - 2 * 3.0103, 1e-4);
    EXPECT_TRUE(response({}, {}, {}).empty());
    const auto grid = frequencies(3, 20, 20000);
    EXPECT_NEAR(grid.at(0), 20, 1e-9);
    EXPECT_NEAR(grid.at(1), 632.4555, 1e-4);
    EXPECT_NEAR(grid.at(2), 20000, 1e-9);
    EXPECT_TRUE(frequencies(0, 20, 20000).empty());
}

TEST(FilterMathTest, TheComplexResponseHasTheLevelAndThePhaseOfTheFilters) {
    const std::vector<PeqValue> bands{{500, 6, 2, 0, false}, {3000, -4, 0.7F, 2, false}};
    const Crossover crossover{FilterValue{100, 9, false}, FilterValue{8000, 13, false}};
    const auto points = frequencies(50, 40, 12000);
    const auto db = response(bands, crossover, points);
    const auto factors = complexResponse(bands, crossover, points);
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_NEAR(20 * std::log10(std::abs(factors[i])), db[i], 1e-6) << points[i];
    const auto phase = complexResponse({}, {FilterValue{1000, 2, false}, {}}, std::vector{1000.0}).at(0);
    EXPECT_NEAR(std::arg(phase), std::numbers::pi / 2, 1e-6)
        << "a Butterworth high pass of 12 dB at its corner";
}

TEST(FilterMathTest, TheFloorIsExactAndHostileNumbersAreHarmless) {
    EXPECT_EQ(at(20, {}, {FilterValue{20000, 15, false}, {}}), -120.0);
    EXPECT_EQ(at(0, {}, {FilterValue{100, 0, false}, {}}), -120.0);
    const float infinity = std::numeric_limits<float>::infinity();
    const float huge = std::numeric_limits<float>::max();
    for (const float bad : {infinity, -infinity, std::nanf(""), huge, -huge})
        for (const std::uint8_t type : {0, 1, 2})
            for (const std::uint32_t fc : {0U, 1U, 24000U, 4294967295U})
                for (const double db : response(std::vector<PeqValue>{{fc, bad, bad, type, false}},
                                                {FilterValue{fc, 15, false}, FilterValue{fc, 14, false}},
                                                frequencies(100, 1e-3, 24000)))
                    EXPECT_GE(db, -120.0);
}

}  // namespace
}  // namespace Wendril::FilterMath
