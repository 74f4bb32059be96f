#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// The responses of all outputs in one graph, and their crossover filters.
class TechCrossoverView final : public Kit::Surface {
public:
    TechCrossoverView(AppModel& model, QWidget* parent);

private:
    QWidget* graphPanel();
    QWidget* block(int output);

    AppModel& model;
};

}  // namespace Corvane
