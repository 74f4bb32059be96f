#pragma once

#include "app/model/appmodel.hpp"

#include <QMargins>

#include <span>
#include <string_view>
#include <vector>

namespace Corvane {

/// Round the panels of every page, and between them.
constexpr QMargins pageMargins(32, 24, 32, 24);
constexpr int panelGap = 24;

/// The meters of these channels, in dB.
inline std::vector<float> levelsOf(const AppModel& model, std::span<const std::string_view> channels) {
    std::vector<float> levels;
    for (const std::string_view channel : channels)
        levels.push_back(model.meter(channel));
    return levels;
}

}  // namespace Corvane
