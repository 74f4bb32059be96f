#include "app/appmodel.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double sameGain = 0.05;  // dB
constexpr PeqValue neutral{1000, 0, 3, 0, false};

// What the equaliser takes; what is no number becomes `otherwise`.
float limited(float value, float low, float high, float otherwise) {
    return std::isnan(value) ? otherwise : std::clamp(value, low, high);
}

PeqValue limited(PeqValue band) {
    band.fc = std::clamp<std::uint32_t>(band.fc, 20, 22000);
    band.gain = limited(band.gain, -12, 12, neutral.gain);
    band.q = limited(band.q, 0.3F, 50, neutral.q);
    return band;
}

}  // namespace

void AppModel::setTone(ToneBand band, double db) {
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
    MixerValue value =
        valueAs<MixerValue>(ModuleKind::mixer, crosspoint).value_or(MixerValue{0, false, true});
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
    const bool mute = !outputsMuted();
    for (const std::string_view output : K7Q::outputs) {
        auto gain = valueAs<GainValue>(ModuleKind::gain, output);
        if (!gain) continue;
        gain->mute = mute;
        set(K7Q::index(ModuleKind::gain, output, 0), ModuleValue{*gain});
    }
}

int AppModel::bandsOf(std::string_view channel) {
    return static_cast<int>(std::ranges::count_if(K7Q::modules(), [channel](const ModuleRef& ref) {
        return ref.kind == ModuleKind::peq && ref.channel == channel;
    }));
}

void AppModel::rewriteEq(std::string_view channel, const std::function<void(PeqValue&)>& change) {
    const int bands = bandsOf(channel);
    for (int band = 0; band < bands; ++band) {
        const auto current = valueAs<PeqValue>(ModuleKind::peq, channel, band);
        PeqValue value = limited(current.value_or(neutral));
        change(value);
        set(K7Q::index(ModuleKind::peq, channel, band), ModuleValue{value});
    }
}

void AppModel::setEqBypass(std::string_view channel, bool bypass) {
    rewriteEq(channel, [bypass](PeqValue& band) { band.bypass = bypass; });
}

void AppModel::resetEq(std::string_view channel) {
    rewriteEq(channel, [](PeqValue& band) { band.gain = 0; });
}

bool AppModel::eqBypassed(std::string_view channel) const {
    const int bands = bandsOf(channel);
    for (int band = 0; band < bands; ++band) {
        const auto value = valueAs<PeqValue>(ModuleKind::peq, channel, band);
        if (!value || !value->bypass) return false;
    }
    return true;
}

FilterMath::Crossover AppModel::crossover(std::string_view output) const {
    return {valueAs<FilterValue>(ModuleKind::hpf, output).value_or(FilterValue{20, 3, true}),
            valueAs<FilterValue>(ModuleKind::lpf, output).value_or(FilterValue{22000, 3, true})};
}

}  // namespace Corvane
