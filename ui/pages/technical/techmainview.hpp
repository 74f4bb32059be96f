#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// The strips of all channels, the presets and the routing.
class TechMainView final : public Kit::Surface {
public:
    TechMainView(AppModel& model, QWidget* parent);

private:
    QWidget* levelsPanel(AppModel& model);
};

}  // namespace Corvane
