#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// The delay of each output.
class DelayView final : public Kit::Surface {
public:
    DelayView(AppModel& model, QWidget* parent);

private:
    QLayout* column(int output, QWidget* parent);

    AppModel& model;
};

}  // namespace Corvane
