#include "app/model/equaliser.hpp"

#include "app/model/appmodel.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

using namespace Wendril;

namespace {

template <class Number>
Number limited(Number value, const Limits& limits) {
    const auto number = static_cast<double>(value);
    return static_cast<Number>(std::isnan(number) ? limits.standard
                                                  : std::clamp(number, limits.lowest, limits.highest));
}

}  // namespace

PeqValue limitedGainAndQ(PeqValue band) {
    band.gain = limited(band.gain, bandLimits("gain"));
    band.q = limited(band.q, bandLimits("q"));
    return band;
}

PeqValue limited(PeqValue band) {
    band.fc = limited(band.fc, bandLimits("fc"));
    return limitedGainAndQ(band);
}

int AppModel::bandsOf(std::string_view channel) {
    return static_cast<int>(std::ranges::count_if(K7Q::modules(), [channel](const ModuleRef& ref) {
        return ref.kind == ModuleKind::peq && ref.channel == channel;
    }));
}

void AppModel::rewriteEq(std::string_view channel, const std::function<void(PeqValue&)>& change) {
    const History::Scope step(history);
    const int bands = bandsOf(channel);
    for (int band = 0; band < bands; ++band) {
        const auto current = valueAs<PeqValue>(ModuleKind::peq, channel, band);
        PeqValue value = limited(current.value_or(neutralBand));
        change(value);
        set(K7Q::index(ModuleKind::peq, channel, band), ModuleValue{value});
    }
}

void AppModel::setEqBypass(std::string_view channel, bool bypass) {
    rewriteEq(channel, [bypass](PeqValue& band) { band.bypass = bypass; });
}

void AppModel::resetEq(std::string_view channel) {
    rewriteEq(channel, [](PeqValue& band) { band.gain = neutralBand.gain; });
}

bool AppModel::eqBypassed(std::string_view channel) const {
    const int bands = bandsOf(channel);
    for (int band = 0; band < bands; ++band) {
        const auto value = valueAs<PeqValue>(ModuleKind::peq, channel, band);
        if (!value || !value->bypass) return false;
    }
    return true;
}

}  // namespace Corvane
