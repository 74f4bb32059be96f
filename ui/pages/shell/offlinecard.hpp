#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// Says how to connect, while the link is not online.
class OfflineCard final : public Kit::Panel {
public:
    OfflineCard(AppModel& model, QWidget* parent);
};

}  // namespace Corvane
