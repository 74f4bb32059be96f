#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shared/pageview.hpp"

namespace Corvane {

/// The delay of each output.
class DelayView final : public PageView {
public:
    DelayView(AppModel& model, QWidget* parent);
};

}  // namespace Corvane
