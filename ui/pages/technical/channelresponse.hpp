#pragma once

#include "app/model/appmodel.hpp"

#include <string_view>
#include <vector>

namespace Corvane {

/// What shapes the frequency response of a channel: the bands of its equaliser and, of an output,
/// the crossover.
struct ChannelFilters {
    std::vector<Wendril::PeqValue> bands;
    Wendril::FilterMath::Crossover crossover;

    bool operator==(const ChannelFilters&) const = default;
};

/// The filters of a channel of the focused speaker.
ChannelFilters filtersOf(AppModel& model, std::string_view channel);

/// In dB at each of `EQPlot::freqs`.
std::vector<double> responseOf(const ChannelFilters& filters);

/// Of one band alone, as it is when it is on.
std::vector<double> responseOf(const ChannelFilters& filters, int band);

}  // namespace Corvane
