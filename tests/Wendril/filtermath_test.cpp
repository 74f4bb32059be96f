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

// A frequency as a multiple of another where the bilinear transform puts it, and the reverse.
Real ratio(double frequency, double corner) {
    const auto warped = [](Real f) { return std::tan(std::numbers::pi_v<Real> * f / sampleRate); };
    return warped(frequency) / warped(corner);
}
double multiple(double corner, double times) {
    return sampleRate / std::numbers::pi *
           std::atan(times * std::tan(std::numbers::pi * corner / sampleRate));
}

// A band as the analogue filter from which the digital one is made, in dB.
double analogue(const PeqValue& band, double frequency) {
    const Real a = std::pow(Real(10), band.gain / Real(40));
    const Real x = std::pow(ratio(frequency, band.fc), 2);
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
    const auto pick = [&random](double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    };
    const auto grid = frequencies(320, 20, 20000);
    for (int channel = 0; channel < 100; ++channel) {
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
    // Butterworth orders whose product a slope is: of order n, 1 + x^2n.
    const struct {
        std::uint8_t code;
        std::string name;
        std::vector<int> orders;
    } slopesByOrder[] = {
        {0, "Butterworth 6 dB", {1}},
        {2, "Butterworth 12 dB", {2}},
        {5, "Butterworth 18 dB", {3}},
        {7, "Butterworth 24 dB", {4}},
        {10, "Butterworth 36 dB", {6}},
        {13, "Butterworth 48 dB", {8}},
        {4, "Linkwitz 12 dB", {1, 1}},
        {9, "Linkwitz 24 dB", {2, 2}},
        {12, "Linkwitz 36 dB", {4, 2}},
        {15, "Linkwitz 48 dB", {4, 4}},
        {1, "Tipo 1", {1}},
        {16, "Tipo 16", {}},
        {255, "Tipo 255", {}},
    };
    // Bessel curves in dB at the corner and an octave beyond it, at 1.0 and 2.0 times the corner.
    const struct {
        std::uint8_t code;
        std::string name;
        double atCorner;
        double beyond;
    } besselSlopes[] = {
        {3, "Bessel 12 dB", -4.77121, -13.22219},   {6, "Tipo 6", -6.75068, -19.94023},
        {8, "Bessel 24 dB", -7.52595, -25.46034},   {11, "Bessel 36 dB", -9.91942, -37.65815},
        {14, "Bessel 48 dB", -12.15639, -49.85448},
    };
    const auto check = [](std::uint8_t code, double times, double expected) {
        const FilterValue filter{1000, code, false};
        EXPECT_NEAR(at(multiple(1000, times), {}, {{}, filter}), expected, 1e-4) << int{code};
        EXPECT_NEAR(at(multiple(1000, 1 / times), {}, {filter, {}}), expected, 1e-4) << int{code};
    };
    for (const auto& [code, name, orders] : slopesByOrder) {
        EXPECT_EQ(slopeName(code), name);
        for (const double times : {0.3, 1.0, 2.0}) {
            double expected = 0;
            for (const int order : orders)
                expected -= 10 * std::log10(1 + std::pow(times, 2 * order));
            check(code, times, expected);
        }
    }
    for (const auto& [code, name, atCorner, beyond] : besselSlopes) {
        EXPECT_EQ(slopeName(code), name);
        check(code, 1, atCorner);
        check(code, 2, beyond);
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

TEST(FilterMathTest, TheGridIsLogarithmicAndIncludesBothEnds) {
    const auto grid = frequencies(3, 20, 20000);
    EXPECT_NEAR(grid.at(0), 20, 1e-9);
    EXPECT_NEAR(grid.at(1), 632.4555, 1e-4);
    EXPECT_NEAR(grid.at(2), 20000, 1e-9);
    EXPECT_TRUE(frequencies(0, 20, 20000).empty());
}

}  // namespace
}  // namespace Wendril::FilterMath
