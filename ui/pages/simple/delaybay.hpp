#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/fader.hpp"

#include <QWidget>

namespace Corvane {

/// The delay of one output: its time on a fader between a scale in ms and one in cm, the distance that
/// sound covers in that time, and the button that switches it.
class DelayBay final : public QWidget, public Kit::Growing {
public:
    /// Outputs count from 0.
    DelayBay(AppModel& model, int output, QWidget* parent);

    void setGrowth(double factor) override { growth = factor; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Scale {
        const char* unit;
        double perMs;       // units
        double tick;        // units from one tick to the next
        int ticksPerLabel;  // one of so many ticks is long and has a label
    };

    void drawScales(QPainter& painter) const;
    void drawScale(QPainter& painter, Qt::Alignment text, const Scale& scale) const;

    Kit::Fader* fader;
    double growth = 1;
};

}  // namespace Corvane
