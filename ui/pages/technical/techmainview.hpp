#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shared/pageview.hpp"

namespace Corvane {

/// The strips of all channels, the presets and the routing.
class TechMainView final : public PageView {
public:
    TechMainView(AppModel& model, QWidget* parent);

private:
    QWidget* levelsPanel(AppModel& model);
};

}  // namespace Corvane
