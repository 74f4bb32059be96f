#pragma once

#include "ui/pages/shared/modulesetting.hpp"

#include "ui/kit/pillbutton.hpp"

namespace Corvane {

/// Reads "ON" and is lit while the delay acts, else "OFF". A click switches the delay and keeps its
/// time.
Kit::PillButton* delayButton(std::string_view channel, const ModuleSetting<Wendril::DelayValue>& delay,
                             QWidget* parent);

}  // namespace Corvane
