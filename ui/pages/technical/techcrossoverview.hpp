#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shared/pageview.hpp"

namespace Corvane {

/// The responses of all outputs in one graph, and their crossover filters.
class TechCrossoverView final : public PageView {
public:
    TechCrossoverView(AppModel& model, QWidget* parent);

private:
    QWidget* graphPanel();
    QWidget* block(int output);

    AppModel& model;
};

}  // namespace Corvane
