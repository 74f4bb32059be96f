#include "cli/curves.hpp"

#include "Wendril/filtermath.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <stdexcept>

namespace Cli {

using namespace Wendril;

namespace {

constexpr std::size_t curvePoints = 320;
constexpr double lowestFrequency = 20;
constexpr double highestFrequency = 20000;
constexpr double lowestLevel = -120;

// A gain module and a delay of a channel, as a factor at a frequency.
std::complex<double> factorOf(const GainValue& gain, const DelayValue& delay, double frequency) {
    if (gain.mute) return 0;
    const double size = std::pow(10, gain.db / 20) * (gain.phaseNormal ? 1 : -1);
    const double seconds = delay.bypass ? 0 : delay.ms / 1000;
    return size * std::polar(1.0, -2 * std::numbers::pi * frequency * seconds);
}

}  // namespace

const std::vector<double>& curveFrequencies() {
    static const auto list = FilterMath::frequencies(curvePoints, lowestFrequency, highestFrequency);
    return list;
}

std::vector<double> Curve::db() const {
    std::vector<double> list;
    for (const auto& factor : factors) {
        const double level = 20 * std::log10(std::abs(factor));
        list.push_back(level > lowestLevel ? level : lowestLevel);
    }
    return list;
}

std::vector<double> Curve::degrees() const {
    std::vector<double> list;
    for (const auto& factor : factors)
        list.push_back(std::arg(factor) * 180 / std::numbers::pi);
    return list;
}

std::vector<ModuleRef> curveModules(const std::string& channel, bool level) {
    std::vector<ModuleRef> modules;
    for (const ModuleRef& module : K7Q::modules()) {
        if (module.channel != channel) continue;
        const bool isFilter = module.kind == ModuleKind::peq || module.kind == ModuleKind::hpf ||
                              module.kind == ModuleKind::lpf;
        if (isFilter || (level && (module.kind == ModuleKind::gain || module.kind == ModuleKind::delay)))
            modules.push_back(module);
    }
    if (modules.empty() || channel.find('-') != channel.npos)
        throw std::invalid_argument("não há canal \"" + channel + "\"; há In0, In1, Out0, Out1, Out2, Out3");
    return modules;
}

Curve curveOf(const std::string& channel, const ModuleValues& values, bool level) {
    std::vector<PeqValue> bands;
    FilterMath::Crossover crossover;
    GainValue gain{0, false, true};
    DelayValue delay;
    for (const ModuleRef& module : curveModules(channel, level)) {
        const ModuleValue& value = values.at(module.index);
        if (const auto* band = value.as<PeqValue>()) bands.push_back(*band);
        if (const auto* held = value.as<GainValue>()) gain = *held;
        if (const auto* held = value.as<DelayValue>()) delay = *held;
        if (const auto* filter = value.as<FilterValue>())
            (module.kind == ModuleKind::hpf ? crossover.highPass : crossover.lowPass) = *filter;
    }
    Curve curve{channel, FilterMath::complexResponse(bands, crossover, curveFrequencies())};
    if (level)
        for (std::size_t i = 0; i < curve.factors.size(); ++i)
            curve.factors[i] *= factorOf(gain, delay, curveFrequencies()[i]);
    return curve;
}

Curve sumOf(const std::vector<Curve>& curves) {
    Curve sum{"", std::vector<std::complex<double>>(curveFrequencies().size())};
    for (const Curve& curve : curves) {
        sum.name += (sum.name.empty() ? "" : "+") + curve.name;
        std::ranges::transform(sum.factors, curve.factors, sum.factors.begin(), std::plus<>());
    }
    return sum;
}

}  // namespace Cli
