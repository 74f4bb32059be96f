#include "ui/kit/valuecontrol.hpp"

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
constexpr double fineFactor = 0.2;

}  // namespace

ValueControl::ValueControl(Range range, double defaultValue, double step, Format format, QWidget* parent)
    : Control(parent)
    , range(range)
    , defaultValue(defaultValue)
    , step(step)
    , format(std::move(format))
    , shown(defaultValue) {
    setCursor(Qt::PointingHandCursor);
}

void ValueControl::setValue(double value) {
    if (value == shown) return;
    shown = value;
    shownChanged();
}

double ValueControl::legal(double candidate) const {
    const double kept = std::clamp(candidate, range.lower, range.upper);
    return step > 0 ? std::round(kept / step) * step : kept;
}

// The owner keeps single precision; what only differs beyond it does not differ.
void ValueControl::propose(double candidate) {
    if (std::isnan(candidate)) return;
    const double next = legal(candidate);
    if (static_cast<float>(next) != static_cast<float>(shown) && onChange) onChange(next);
}

void ValueControl::moveBySteps(double steps) { propose(shown + steps * stepSize()); }

double ValueControl::stepSize() const { return step > 0 ? step : range.extent() / stepsOfContinuousRange; }

double ValueControl::fraction() const {
    return std::isfinite(shown) ? std::clamp((shown - range.lower) / range.extent(), 0.0, 1.0) : 0;
}

void ValueControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    dragStart = shown;
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
    if (event->button() != Qt::LeftButton) return;
    dragStart.reset();
    dragging = false;
    update();
}

void ValueControl::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) propose(defaultValue);
}

// Alt turns a wheel sideways.
void ValueControl::wheelEvent(QWheelEvent* event) {
    const QPoint turn = event->angleDelta();
    wheelRest += turn.y() != 0 ? turn.y() : turn.x();
    const int notches = wheelRest / QWheelEvent::DefaultDeltasPerStep;
    wheelRest -= notches * QWheelEvent::DefaultDeltasPerStep;
    if (notches != 0) moveBySteps(notches);
    event->accept();
}

void ValueControl::keyPressEvent(QKeyEvent* event) {
    const double arrow = step == 0 && isFineTuned(event->modifiers()) ? fineFactor : 1;
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
    default:
        QWidget::keyPressEvent(event);
    }
}

}  // namespace Kit
