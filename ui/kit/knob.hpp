#pragma once

#include "ui/kit/valuecontrol.hpp"

#include <QString>

#include <cstdint>

namespace Kit {

struct KnobLook {
    double size = 96;       // of the dial
    bool bipolar = false;   // the arc starts in the middle of the sweep
    QString minLabel = {};  // at the ends of the sweep
    QString maxLabel = {};
};

/// A rotary control, turned by dragging up and down: 220 points for the whole range, five times as
/// far with Option or Shift held.
class Knob : public ValueControl {
public:
    Knob(QString title, Range range, double defaultValue, double step, Format format, KnobLook look,
         QWidget* parent);

    /// A caption that tells something else; the knob keeps its size.
    void setTitle(const QString& title);

    QSize sizeHint() const override;

protected:
    double dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const override;
    bool event(QEvent* event) override;
    void paint(QPainter& painter) override;
    Outline outline() const override;

private:
    QRectF dial() const;
    void drawDial(QPainter& painter) const;
    void drawEndLabel(QPainter& painter, const QString& text, double angle) const;
    void drawArc(QPainter& painter) const;
    void drawCap(QPainter& painter) const;
    void drawPointer(QPainter& painter) const;
    void drawTexts(QPainter& painter) const;

    QString title;
    const KnobLook look;
};

/// A knob over the times that the board accepts; it shows and reports positions in that table.
/// `timeOf` and `positionOf` convert.
class TimeKnob final : public Knob {
public:
    TimeKnob(const QString& title, double size, QWidget* parent);

    static double positionOf(std::uint32_t ms);
    static std::uint32_t timeOf(double position);
};

}  // namespace Kit
