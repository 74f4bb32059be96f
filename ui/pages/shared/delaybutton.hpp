#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/pillbutton.hpp"

#include <string_view>

namespace Corvane {

constexpr double longestDelay = 5;  // ms

/// The delay of a channel; none where the board has reported something else.
Wendril::DelayValue delayOf(const AppModel& model, std::string_view channel);

/// Keeps whether it is bypassed.
void setDelay(AppModel& model, std::string_view channel, double ms);

/// Switches the delay of a channel on and off.
Kit::PillButton* delayButton(AppModel& model, std::string_view channel, QWidget* parent);

}  // namespace Corvane
