#pragma once

#include "ui/kit/meterbars.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QString>

#include <vector>

namespace Kit {

/// A vertical slider with steps of 0.1 and meter bars beside its slot. A drag over the whole travel of
/// the cap covers the whole range; there is no fine drag.
class Fader final : public ValueControl {
public:
    struct Look {
        double height = 300;  // the least of the track; the fader grows with its layout
        int levels = 0;       // number of meter bars
        bool labelsBelow = false;
        bool hasScale = true;  // beside the slot: of a gain in dB
    };

    /// Height of the lines of caption and read-out, and the gap between them and the track.
    static constexpr int labelLine = 20;
    static constexpr int labelGap = 8;

    Fader(const QString& title, Range range, double defaultValue, Format format, const Look& look,
          QWidget* parent);

    void setLevels(const std::vector<float>& levels);

    /// The place of the middle of the cap at that value, below the top of a fader of its usual size.
    double placeOf(double value) const;

    double stepSize() const override;
    QSize sizeHint() const override;
    QAccessible::Role accessibleRole() const override { return QAccessible::Slider; }

protected:
    double dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const override;
    void paint(QPainter& painter) override;
    Outline outline() const override;
    void resizeEvent(QResizeEvent* event) override;
    QRect editorPlace() const override { return readOut().toRect(); }

private:
    QRectF track() const;
    QRectF readOut() const;
    QRectF cap() const;
    bool isBright() const;
    double slotCentre() const;
    void drawSlider(QPainter& painter) const;
    void drawTrack(QPainter& painter) const;
    std::vector<double> marks() const;
    void drawNumbers(QPainter& painter) const;
    void drawCap(QPainter& painter) const;
    void drawTexts(QPainter& painter) const;

    const QString title;
    const Look look;
    MeterBars* bars = nullptr;  // where it has any
    QRectF drawnCap;            // at the last repaint
    bool drawnBright = false;
};

}  // namespace Kit
