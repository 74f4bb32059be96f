#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/eqgraph.hpp"
#include "ui/pages/shared/pageview.hpp"

namespace Corvane {

/// The responses of all outputs in one graph, and their crossover filters.
class TechCrossoverView final : public PageView {
public:
    TechCrossoverView(AppModel& model, QWidget* parent);

protected:
    void spend(int height) override;

private:
    QWidget* graphPanel();
    QWidget* block(int output);

    AppModel& model;
    Kit::EQGraph* graph = nullptr;
};

}  // namespace Corvane
