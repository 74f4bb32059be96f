#pragma once

#include "ui/kit/animation.hpp"
#include "ui/kit/control.hpp"

#include <QRegion>
#include <QString>

namespace Kit {

/// A needle meter. Its scale is linear in voltage, as on the instruments that it is drawn after.
class AnalogVU final : public Control {
public:
    /// `reference`: the level in dB that reads 0 VU.
    AnalogVU(const QString& label, float reference, QWidget* parent);

    /// In dB; anything that is not finite is silence.
    void setLevel(float level);

    /// Degrees from upright, to the right; full scale is +3 VU, and a little more is shown.
    static double needleAngle(double vu);

    QAccessible::Role accessibleRole() const override { return QAccessible::Indicator; }
    QString valueText() const override;

protected:
    void paint(QPainter& painter) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Card;

    void redraw(const QRegion& region);
    double vu() const;
    QRectF bezel() const;
    QRectF face() const;
    QRectF peakLamp() const;
    QRegion sweptBetween(double from, double to) const;
    void drawNeedle(QPainter& painter) const;

    const QString label;
    const float reference;
    float level;
    Animation needle;
    double drawnAngle;
    QWidget* card;
};

}  // namespace Kit
