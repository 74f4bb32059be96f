#include "ui/pages/technical/channelresponse.hpp"

#include "ui/pages/shared/modulesetting.hpp"

#include "ui/kit/eqplot.hpp"

namespace Corvane {

using namespace Wendril;

ChannelFilters filtersOf(AppModel& model, std::string_view channel) {
    ChannelFilters filters;
    for (int band = 0; band < AppModel::bandsOf(channel); ++band)
        filters.bands.push_back(ModuleSetting<PeqValue>(model, ModuleKind::peq, channel, band).value());
    if (!isInput(channel)) filters.crossover = model.crossover(channel);
    return filters;
}

std::vector<double> responseOf(const ChannelFilters& filters) {
    return FilterMath::response(filters.bands, filters.crossover, Kit::EQPlot::freqs());
}

std::vector<double> responseOf(const ChannelFilters& filters, int band) {
    PeqValue alone = filters.bands.at(static_cast<std::size_t>(band));
    alone.bypass = false;
    return responseOf({.bands = {alone}, .crossover = {}});
}

}  // namespace Corvane
