#include "app/model/appmodel.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double sameGain = 0.05;  // dB

}  // namespace

void AppModel::setTone(ToneBand band, double db) {
    const History::Scope step(history);
    const ToneFilter filter = filterOf(band);
    const PeqValue value{filter.fc, static_cast<float>(db), filter.q, static_cast<std::uint8_t>(filter.type),
                         false};
    for (const std::string_view input : K7Q::inputs)
        set(K7Q::index(ModuleKind::peq, input, filter.band), ModuleValue{value});
}

double AppModel::tone(ToneBand band) const {
    const auto value = valueAs<PeqValue>(ModuleKind::peq, K7Q::inputs.front(), filterOf(band).band);
    return value ? value->gain : 0;
}

std::optional<TonePreset> AppModel::activePreset() const {
    const auto* const found = std::ranges::find_if(TonePreset::all, [this](const TonePreset& preset) {
        return std::ranges::all_of(
            toneBands, [&](ToneBand band) { return std::abs(preset.gain(band) - tone(band)) < sameGain; });
    });
    return found == TonePreset::all.end() ? std::nullopt : std::optional(*found);
}

void AppModel::setRoute(std::string_view input, std::string_view output, bool on) {
    const std::string crosspoint = std::string(input) + "-" + std::string(output);
    auto value = valueOrDefault<MixerValue>(ModuleKind::mixer, crosspoint);
    value.mute = !on;
    set(K7Q::index(ModuleKind::mixer, crosspoint, 0), ModuleValue{value});
}

bool AppModel::outputsMuted() const {
    return std::ranges::all_of(K7Q::outputs, [this](std::string_view output) {
        const auto gain = valueAs<GainValue>(ModuleKind::gain, output);
        return gain && gain->mute;
    });
}

void AppModel::toggleOutputMute() {
    const History::Scope step(history);
    const bool mute = !outputsMuted();
    for (const std::string_view output : K7Q::outputs) {
        auto gain = valueAs<GainValue>(ModuleKind::gain, output);
        if (!gain) continue;
        gain->mute = mute;
        set(K7Q::index(ModuleKind::gain, output, 0), ModuleValue{*gain});
    }
}

FilterMath::Crossover AppModel::crossover(std::string_view output) const {
    return {valueOrDefault<FilterValue>(ModuleKind::hpf, output),
            valueOrDefault<FilterValue>(ModuleKind::lpf, output)};
}

}  // namespace Corvane
