#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// Compressor and limiter of the chosen outputs. The controls show the first of these outputs; an
/// edit goes to all of them.
class DynamicsView final : public Kit::Surface {
public:
    DynamicsView(AppModel& model, QWidget* parent);

private:
    QWidget* compressorPanel();
    QWidget* limiterPanel();
    QWidget* levelBlock();
    bool limiterBypassed() const;
    void toggleLimiter();

    AppModel& model;
};

}  // namespace Corvane
