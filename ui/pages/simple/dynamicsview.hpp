#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

namespace Corvane {

/// Compressor and limiter of the chosen outputs. It shows the first of them and edits them all.
class DynamicsView final : public Kit::Surface {
public:
    DynamicsView(AppModel& model, QWidget* parent);

private:
    QWidget* compressorPanel();
    QWidget* limiterPanel();
    QWidget* levelBlock();
    Wendril::DynamicsValue compressor() const;
    Wendril::LimiterValue limiter() const;
    bool limiterBypassed() const;
    void toggleCompressor();
    void toggleLimiter();

    AppModel& model;
};

}  // namespace Corvane
