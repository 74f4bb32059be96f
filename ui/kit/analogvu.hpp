#pragma once

#include "ui/kit/animation.hpp"
#include "ui/kit/control.hpp"
#include "ui/kit/strip.hpp"

#include <QRegion>
#include <QString>

#include <vector>

namespace Kit {

/// A needle meter with a scale that is linear in voltage, as on analogue VU meters.
class AnalogVU final : public Control {
public:
    /// `reference`: the level in dB that reads 0 VU.
    AnalogVU(const QString& label, float reference, QWidget* parent);

    /// In dB. A level that is not finite means silence.
    void setLevel(float level);

    /// Degrees from straight up, positive to the right: -50 for silence, 50 at +3 VU, at most 54.
    static double needleAngle(double vu);

    void setGrowth(double factor) override;

    QAccessible::Role accessibleRole() const override { return QAccessible::ProgressBar; }
    QString valueText() const override;

protected:
    void paint(QPainter& painter) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    double vu() const;
    QRectF bezel() const;
    QRectF face() const;
    QRectF peakLamp() const;
    QRectF lampLight() const;
    QRegion sweptBetween(double from, double to) const;
    QPixmap glass(const QPainter& painter) const;
    QPixmap instrument(const QPainter& painter) const;
    void drawLamp(QPainter& painter) const;
    void paintNeedleArea(QPainter& painter) const;
    std::vector<Paint::Strip> needleStrips(const QPainter& painter) const;

    const QString label;
    const float reference;
    float level;
    double captionGrowth = 1;
    Animation needle;
    double drawnAngle;
    QWidget* needleArea;  // the part of the face in which the needle moves
};

}  // namespace Kit
