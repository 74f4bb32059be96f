#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shared/pageview.hpp"

namespace Corvane {

/// Compressor and limiter of the chosen outputs. The controls show the first of these outputs; an
/// edit goes to all of them.
class DynamicsView final : public PageView {
public:
    DynamicsView(AppModel& model, QWidget* parent);

private:
    QWidget* compressorPanel();
    QWidget* limiterPanel();
    QWidget* levelBlock(QWidget* parent);
    bool isChosen(std::string_view output) const;
    bool limiterBypassed() const;
    void toggleLimiter();

    AppModel& model;
};

}  // namespace Corvane
