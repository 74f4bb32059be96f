#include "ui/kit/valuecontrol.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/numbereditor.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

constexpr double stepsOfContinuousRange = 40;
constexpr double stepsOfPage = 10;

}  // namespace

ValueControl::ValueControl(Range range, double defaultValue, double step, Format format, QWidget* parent)
    : Control(parent)
    , range(range)
    , defaultValue(defaultValue)
    , step(step)
    , format(std::move(format))
    , current(defaultValue) {
    setCursor(Qt::PointingHandCursor);
}

void ValueControl::setValue(double value) {
    if (value == current) return;
    const double before = std::exchange(current, value);
    update(changedSince(before));
    notifyValueChanged(*this);
    valueChanged();
}

// The nearest multiple of the step within the range. An end of the range need not be a multiple, so that
// rounding can leave the range. Multiples of decimal steps are inexact in binary, so that an end that is a
// multiple can seem to be none: `noise` allows for that. Adding 0.0 turns -0 into 0, whose read-out has no
// minus sign.
double ValueControl::legal(double candidate) const {
    const double kept = std::clamp(candidate, range.lower, range.upper);
    if (step <= 0) return kept + 0.0;
    constexpr double noise = 1e-6;
    double count = std::round(kept / step);
    if (count * step > range.upper + noise * step) --count;
    if (count * step < range.lower - noise * step) ++count;
    return std::clamp(count * step, range.lower, range.upper) + 0.0;
}

// Owners keep values in single precision, so values that are equal in single precision are equal here.
void ValueControl::propose(double candidate) {
    if (std::isnan(candidate) || !isEnabled()) return;
    const double next = legal(candidate);
    if (static_cast<float>(next) != static_cast<float>(current) && onChange) onChange(next);
}

// A board may report any number.
QString ValueControl::valueText() const {
    return std::isfinite(current) ? format(current) : QStringLiteral("—");
}

double ValueControl::base() const { return std::isfinite(current) ? current : defaultValue; }

void ValueControl::moveBySteps(double steps) { propose(base() + steps * stepSize()); }

double ValueControl::stepSize() const { return step > 0 ? step : range.extent() / stepsOfContinuousRange; }

double ValueControl::fineArrow() const { return step > 0 ? step / stepSize() : fineFactor; }

double ValueControl::fractionOf(double value) const {
    const double finite = std::isfinite(value) ? value : defaultValue;
    return std::clamp((finite - range.lower) / range.extent(), 0.0, 1.0);
}

void ValueControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragStart = base();
    dragFrom = event->globalPosition();
    update();
}

void ValueControl::mouseMoveEvent(QMouseEvent* event) {
    if (!dragStart || !(event->buttons() & Qt::LeftButton)) return;
    const QPointF translation = event->globalPosition() - dragFrom;
    dragging = dragging || std::hypot(translation.x(), translation.y()) >= dragThreshold();
    if (dragging) propose(dragged(*dragStart, translation, event->modifiers()));
}

void ValueControl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) cancelInteraction();
}

void ValueControl::cancelInteraction() {
    dragStart.reset();
    dragging = false;
    update();
}

void ValueControl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) propose(defaultValue);
}

// A control that has not been chosen leaves the wheel alone: the pointer may only pass over it.
void ValueControl::wheelEvent(QWheelEvent* event) {
    if (!hasFocus()) return event->ignore();
    if (const int turned = notches.take(*event)) moveBySteps(turned);
    event->accept();
}

void ValueControl::keyPressEvent(QKeyEvent* event) {
    const double arrow = isFine(event->modifiers()) ? fineArrow() : 1;
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        return moveBySteps(arrow);
    case Qt::Key_Down:
    case Qt::Key_Left:
        return moveBySteps(-arrow);
    case Qt::Key_PageUp:
        return moveBySteps(stepsOfPage);
    case Qt::Key_PageDown:
        return moveBySteps(-stepsOfPage);
    case Qt::Key_Home:
        return propose(defaultValue);
    case Qt::Key_End:
        return propose(range.upper);
    default:
        break;
    }
    const QString text = event->text();
    if (text.size() == 1 && QStringView(u"0123456789.,+-\u2212").contains(text.front()))
        return beginEditing(text, false);
    QWidget::keyPressEvent(event);
}

bool ValueControl::isEditing() const { return editor && editor->isActive(); }

void ValueControl::beginEditing(const QString& text, bool replaces) {
    if (!editor) {
        editor = new NumberEditor(*this);
        editor->onTab = [this](bool forward) { leaveEditor(forward); };
    }
    editor->setGrowth(growth());
    editor->begin(text, grown(QRectF(editorPlace())).toRect(), replaces);
}

void ValueControl::leaveEditor(bool forward) { focusNextPrevChild(forward); }

}  // namespace Kit
