#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// Tells how to connect while there is no link.
class OfflineCard final : public Kit::Panel {
public:
    OfflineCard(AppModel& model, QWidget* parent);
};

}  // namespace Corvane
