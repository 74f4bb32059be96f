#include "ui/kit/control.hpp"

#include "ui/kit/accessibility.hpp"

#include <QFocusEvent>
#include <QPainter>

namespace Kit {

Control::Control(QWidget* parent)
    : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover, false);
}

Control::Outline Control::outline() const { return {area(), 7}; }

Control::Outline Control::grownOutline() const {
    const Outline usual = outline();
    return {grown(usual.shape), usual.radius * factor};
}

void Control::setGrowth(double value) {
    if (factor == value) return;
    factor = value;
    updateGeometry();
    update();
}

QRectF Control::grown(const QRectF& place) const { return {grown(place.topLeft()), place.size() * factor}; }

void Control::stateChanged() {
    update();
    notifyValueChanged(*this);
}

// Some desktops move windows by a drag with Alt, so Shift does the same.
bool Control::isFine(Qt::KeyboardModifiers modifiers) {
    return (modifiers & (Qt::AltModifier | Qt::ShiftModifier)) != 0;
}

void Control::setOpacity(double value) {
    if (opacity == value) return;
    opacity = value;
    update();
}

void Control::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const bool disabledAlone = !isEnabled() && (!parentWidget() || parentWidget()->isEnabled());
    painter.setOpacity(disabledAlone ? 0.4 * opacity : opacity);
    painter.scale(factor, factor);
    paint(painter);
}

void Control::enterEvent(QEnterEvent*) {
    hovered = true;
    update();
}

void Control::leaveEvent(QEvent*) {
    hovered = false;
    update();
}

// The focus also returns when the window becomes active or a menu closes. Neither changes whether the
// user reached the control by mouse or by keyboard.
void Control::focusInEvent(QFocusEvent* event) {
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        reachedByKeyboard = reason != Qt::MouseFocusReason;
    if (reachedByKeyboard)
        ring.show();
    else
        ring.hide();
    update();
}

void Control::focusOutEvent(QFocusEvent*) {
    ring.hide();
    update();
}

void Control::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        if (!isEnabled()) cancelInteraction();
        update();
    }
    QWidget::changeEvent(event);
}

void Control::hideEvent(QHideEvent*) {
    hovered = false;
    cancelInteraction();
}

}  // namespace Kit
