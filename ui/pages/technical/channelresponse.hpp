#pragma once

#include "app/model/appmodel.hpp"

#include <string_view>
#include <vector>

namespace Corvane {

/// What shapes the frequency response of a channel: all of its equaliser's bands, and the crossover
/// of an output.
struct ChannelFilters {
    std::vector<Wendril::PeqValue> bands;
    Wendril::FilterMath::Crossover crossover;

    bool operator==(const ChannelFilters&) const = default;
};

/// As the focused speaker has them.
ChannelFilters filtersOf(AppModel& model, std::string_view channel);

/// In dB, where the equaliser graph samples its curves.
std::vector<double> responseOf(const ChannelFilters& filters);

}  // namespace Corvane
