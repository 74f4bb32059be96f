#include "app/model/equaliser.hpp"

#include "app/model/appmodel.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

using namespace Wendril;

namespace {

float limited(float value, float low, float high, float otherwise) {
    return std::isnan(value) ? otherwise : std::clamp(value, low, high);
}

}  // namespace

PeqValue limitedGainAndQ(PeqValue band) {
    band.gain = limited(band.gain, -12, 12, neutralBand.gain);
    band.q = limited(band.q, 0.3F, 50, neutralBand.q);
    return band;
}

PeqValue limited(PeqValue band) {
    band.fc = std::clamp<std::uint32_t>(band.fc, 20, 22000);
    return limitedGainAndQ(band);
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
        PeqValue value = limited(current.value_or(neutralBand));
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

}  // namespace Corvane
