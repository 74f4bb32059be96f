#pragma once

#include "ui/kit/theme.hpp"

#include <array>

namespace Corvane {

/// The colour of each output on the crossover page.
inline const std::array<QColor, 4> outputColors{
    Theme::accent,
    Theme::rgb(0.95, 0.30, 0.75),
    Theme::rgb(1.0, 0.78, 0.20),
    Theme::rgb(0.35, 0.75, 1.0),
};

}  // namespace Corvane
