#pragma once

#include "ui/kit/control.hpp"
#include "ui/kit/notches.hpp"

#include <QRegion>

#include <functional>
#include <optional>

namespace Kit {

class NumberEditor;

struct Range {
    double lower = 0;
    double upper = 1;

    double extent() const { return upper - lower; }
};

/// A control for one number. All input ends in `propose`, which moves the number into the range and
/// onto the step, and reports it when it differs from the current one. A drag is relative to the value
/// at its start. Keyboard: the arrows move by one step, Page Up and Down by ten, Home sets the default,
/// End the highest value; a digit, sign or comma begins to type the number. A notch of the wheel moves by
/// one step while the control has the focus.
class ValueControl : public Control {
public:
    using Format = std::function<QString(double)>;
    using Change = std::function<void(double)>;

    ValueControl(Range range, double defaultValue, double step, Format format, QWidget* parent);

    const Range range;
    const double defaultValue;
    const double step;  // values are multiples of it; 0 means continuous
    const Format format;
    Change onChange;

    double value() const { return current; }
    void setValue(double value);

    /// Does nothing while the control is disabled.
    void propose(double candidate);
    virtual void moveBySteps(double steps);

    /// How far an arrow key and a notch of the wheel move.
    virtual double stepSize() const;

    QAccessible::Role accessibleRole() const override { return QAccessible::Dial; }
    QString valueText() const override;

    /// What screen readers say of the value, where the read-out does not say all of it.
    Format spokenFormat;
    QString spokenText() const override { return spokenFormat ? spokenFormat(value()) : valueText(); }

    /// The number that stands for a value in the read-out, in the unit there, and the value that a number
    /// stands for.
    virtual double shownNumber(double value) const { return value; }
    virtual double fromShown(double number) const { return number; }

    /// How a value is read out while it is typed.
    virtual QString typedText(double value) const { return format(value); }

    bool isEditing() const;

    /// The nearest value in the range and on the step.
    double legal(double candidate) const;

protected:
    /// The value that changes start from: the default while the value is not finite.
    double base() const;

    /// A value's place in the range, 0 to 1.
    double fractionOf(double value) const;
    double fraction() const { return fractionOf(current); }
    bool isDragging() const { return dragStart.has_value(); }

    /// The value of a drag that began at `start`, before it is moved into the range and onto the step.
    virtual double dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const = 0;

    /// How far an arrow key moves with Option or Shift held, in steps of `stepSize`.
    virtual double fineArrow() const;

    /// The distance from which a press that moves is a drag.
    virtual double dragThreshold() const { return 0; }

    /// Where the number is typed.
    virtual QRect editorPlace() const { return rect(); }

    /// With `replaces`, typing replaces the text.
    void beginEditing(const QString& text, bool replaces);

    /// Tab has ended the typing of a number.
    virtual void leaveEditor(bool forward);

    /// The control shows another value now.
    virtual void valueChanged() {}

    /// What looks otherwise than when the value was `before`.
    virtual QRegion changedSince(double /*before*/) const { return rect(); }

    void cancelInteraction() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    double current;
    std::optional<double> dragStart;
    QPointF dragFrom;
    bool dragging = false;
    Notches notches;
    NumberEditor* editor = nullptr;  // made when a number is typed first
};

}  // namespace Kit
