#pragma once

#include "ui/kit/animation.hpp"
#include "ui/kit/control.hpp"

namespace Kit {

/// A bar from -60 dB (empty) to +6 dB (full). The widget is larger than the bar by `glow` on all sides,
/// so that the glow of the lit part is not cut off.
class MeterBar final : public Control {
public:
    static constexpr int glow = 5;

    /// `width` of the bar, without the glow.
    MeterBar(double width, QWidget* parent);

    /// In dB. A level that is not finite means silence.
    void setLevel(float level);

    /// The lit part of the bar, 0 to 1.
    static double fractionOf(float level);

    QAccessible::Role accessibleRole() const override { return QAccessible::Indicator; }
    QString valueText() const override;
    std::optional<MeterLevel> meteredLevel() const override;

protected:
    void paint(QPainter& painter) override;

private:
    double barHeight() const;
    double litHeight(double fraction) const;
    void showFill();

    const double barWidth;
    float level;
    Animation fill;
    double drawn = 0;  // the fraction at the last repaint
};

}  // namespace Kit
