#pragma once

#include "ui/kit/control.hpp"

#include <functional>
#include <optional>

namespace Kit {

struct Range {
    double lower = 0;
    double upper = 1;

    double extent() const { return upper - lower; }
};

/// A control for one number. Whatever the user does ends in `propose`, which keeps the number in
/// its range and on its step and reports it when it differs from the one shown; a drag always
/// counts from the value at its start. Keyboard: arrows, Page Up and Down, Home for the default;
/// the wheel moves by one step.
class ValueControl : public Control {
public:
    using Format = std::function<QString(double)>;
    using Change = std::function<void(double)>;

    ValueControl(Range range, double defaultValue, double step, Format format, QWidget* parent);

    const Range range;
    const double defaultValue;
    const double step;  // quantum; 0 means continuous
    const Format format;
    Change onChange;

    double value() const { return shown; }
    void setValue(double value);

    /// Reports nothing while the control is disabled.
    void propose(double candidate);
    virtual void moveBySteps(double steps);

    /// What an arrow key and a notch of the wheel change.
    virtual double stepSize() const;

    QAccessible::Role accessibleRole() const override { return QAccessible::Dial; }
    QString valueText() const override { return format(shown); }

protected:
    /// Quantised and within the range.
    double legal(double candidate) const;

    double fraction() const;
    bool isDragging() const { return dragStart.has_value(); }

    /// Where a drag that began at `start` has come to.
    virtual double dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const = 0;

    /// What an arrow key moves with Option or Shift held, in steps.
    virtual double fineArrow() const;

    /// How far the mouse must go before a press is a drag.
    virtual double dragThreshold() const { return 0; }

    void cancelInteraction() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    double shown;
    std::optional<double> dragStart;
    QPointF dragFrom;
    bool dragging = false;
    Notches notches;
};

}  // namespace Kit
