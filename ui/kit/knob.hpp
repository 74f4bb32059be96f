#pragma once

#include "ui/kit/tag.hpp"
#include "ui/kit/valuecontrol.hpp"

#include <QBasicTimer>

#include <QPainterPath>
#include <QString>

namespace Kit {

/// A rotary control. A drag of 220 points up covers the whole range, and a fifth of it with Option or
/// Shift held.
class Knob : public ValueControl {
public:
    struct Look {
        double size = 96;       // diameter of the dial
        bool bipolar = false;   // the value arc starts in the middle of the sweep, not at its left end
        QString minLabel = {};  // at the left end of the sweep
        QString maxLabel = {};  // at the right end
    };

    Knob(QString title, Range range, double defaultValue, double step, Format format, Look look,
         QWidget* parent);

    /// Changes the caption. Neither the size of the knob nor its accessible name changes.
    void setTitle(const QString& title);

    QSize sizeHint() const override;

protected:
    double dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const override;
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void valueChanged() override { updateTag(); }
    QRegion changedSince(double before) const override;
    void paint(QPainter& painter) override;
    Outline outline() const override;
    QRect editorPlace() const override;

private:
    QRectF dial() const;
    QRectF readOut() const;
    QPainterPath arcBetween(double from, double to) const;
    QLineF pointerAt(double fraction) const;
    void drawDial(QPainter& painter) const;
    void drawEndLabel(QPainter& painter, const QString& text, double angle) const;
    void drawGroove(QPainter& painter) const;
    void drawTicks(QPainter& painter) const;
    void drawArc(QPainter& painter) const;
    void drawCap(QPainter& painter) const;
    void drawSheen(QPainter& painter, const QRectF& cap) const;
    void drawChamfer(QPainter& painter) const;
    void drawPointer(QPainter& painter) const;
    void drawTexts(QPainter& painter) const;

    void showTag();
    void updateTag();
    void linger();

    QString title;
    const Look look;
    Tag tag{this};
    QBasicTimer lingering;  // runs for a while after a key or a notch
};

}  // namespace Kit
