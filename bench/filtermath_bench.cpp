#include "Wendril/filtermath.hpp"
#include "Wendril/sections.hpp"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace {

using namespace Wendril;

constexpr int points = 320;
constexpr int sectionCount = 18;  // ten bands and two filters of four sections

std::vector<PeqValue> bands() {
    std::vector<PeqValue> list;
    for (std::uint32_t band = 0; band < 10; ++band)
        list.push_back(
            {40U << band, band % 2 ? 4.0F : -5.0F, 1.4F, static_cast<std::uint8_t>(band % 3), false});
    return list;
}

const FilterMath::Crossover crossover{FilterValue{120, 13, false}, FilterValue{1800, 15, false}};

void reportPerSection(benchmark::State& state) {
    state.counters["per_point_section"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * points * sectionCount,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void response(benchmark::State& state) {
    const auto grid = FilterMath::frequencies(points, 20, 20000);
    const auto list = bands();
    for (auto _ : state)
        benchmark::DoNotOptimize(FilterMath::response(list, crossover, grid));
    reportPerSection(state);
}

void responseByComplexNumbers(benchmark::State& state) {
    const auto grid = FilterMath::frequencies(points, 20, 20000);
    const auto list = bands();
    for (auto _ : state) {
        std::vector<FilterMath::Section> sections;
        for (const PeqValue& band : list)
            sections.push_back(FilterMath::peqCoefficients(band.fc, band.gain, band.q, band.type).value());
        for (const bool high : {true, false}) {
            const FilterValue& filter = *(high ? crossover.highPass : crossover.lowPass);
            const auto cascade = FilterMath::passSections(high, filter.fc, filter.type);
            sections.insert(sections.end(), cascade.begin(), cascade.end());
        }
        std::vector<double> db;
        for (const double f : grid) {
            const std::complex<double> z =
                std::polar(1.0, -2 * std::numbers::pi * f / FilterMath::sampleRate);
            std::complex<double> h = 1;
            for (const auto& s : sections)
                h *= (s.b0 + s.b1 * z + s.b2 * z * z) / (1.0 + s.a1 * z + s.a2 * z * z);
            db.push_back(10 * std::log10(std::max(std::norm(h), 1e-12)));
        }
        benchmark::DoNotOptimize(db);
    }
    reportPerSection(state);
}

BENCHMARK(response);
BENCHMARK(responseByComplexNumbers);

}  // namespace
