#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shared/pageview.hpp"

#include <vector>

namespace Corvane {

class ChannelStrip;

/// The strips of all channels, the presets and the routing.
class TechMainView final : public PageView {
public:
    TechMainView(AppModel& model, QWidget* parent);

protected:
    void spend(int height) override;

private:
    QWidget* levelsPanel(AppModel& model);

    std::vector<ChannelStrip*> strips;
};

}  // namespace Corvane
