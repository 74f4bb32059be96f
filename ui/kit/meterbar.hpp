#pragma once

#include "ui/kit/animation.hpp"
#include "ui/kit/control.hpp"

namespace Kit {

/// A bar from -60 dB (empty) to +6 dB (full). Its widget is larger than the bar by `glow` on all
/// sides, so that its light is not cut off.
class MeterBar final : public Control {
public:
    static constexpr int glow = 5;

    /// `width` of the bar itself.
    MeterBar(double width, QWidget* parent);

    /// In dB; anything that is not finite is silence.
    void setLevel(float level);

    static double fractionOf(float level);

    QAccessible::Role accessibleRole() const override { return QAccessible::Indicator; }
    QString valueText() const override;

protected:
    void paint(QPainter& painter) override;

private:
    double litHeight(double fraction) const;
    void showFill();

    const double barWidth;
    float level;
    Animation fill;
    double shown = 0;  // of the bar, when last told to redraw
};

}  // namespace Kit
