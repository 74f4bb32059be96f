#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// A grid of buttons that says which inputs each output plays.
class RoutingPanel final : public Kit::Panel {
public:
    RoutingPanel(AppModel& model, QWidget* parent);
};

}  // namespace Corvane
