#include "ui/kit/control.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/painting.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace Kit {

Control::Control(QWidget* parent)
    : QWidget(parent) {
    installAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover, false);
}

Control::Outline Control::outline() const { return {QRectF(rect()).adjusted(1, 1, -1, -1), 6}; }

void Control::shownChanged() {
    update();
    notifyValueChanged(*this);
}

// Some desktops keep Alt-drag for moving windows.
bool Control::isFineTuned(Qt::KeyboardModifiers modifiers) const {
    return (modifiers & (Qt::AltModifier | Qt::ShiftModifier)) != 0;
}

void Control::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const bool disabledAlone = !isEnabled() && (!parentWidget() || parentWidget()->isEnabled());
    if (disabledAlone) painter.setOpacity(0.4);
    paint(painter);
    if (!showsFocus) return;
    const Outline ring = outline();
    Paint::edge(painter, ring.shape, ring.radius, Theme::faded(Theme::accent, 0.85), 1.5);
}

void Control::enterEvent(QEnterEvent*) {
    hovered = true;
    update();
}

void Control::leaveEvent(QEvent*) {
    hovered = false;
    update();
}

void Control::focusInEvent(QFocusEvent* event) {
    showsFocus = event->reason() != Qt::MouseFocusReason && event->reason() != Qt::ActiveWindowFocusReason;
    update();
}

void Control::focusOutEvent(QFocusEvent*) {
    showsFocus = false;
    update();
}

void Control::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) update();
    QWidget::changeEvent(event);
}

Key::Key(QWidget* parent)
    : Control(parent) {}

void Key::activate() {
    if (isEnabled() && action) action();
}

void Key::setPressed(bool value) {
    if (pressed == value) return;
    pressed = value;
    update();
}

void Key::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) setPressed(true);
}

void Key::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) setPressed(rect().contains(event->position().toPoint()));
}

void Key::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressed) return;
    setPressed(false);
    activate();
}

void Key::keyPressEvent(QKeyEvent* event) {
    const bool activates =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!activates || event->isAutoRepeat()) return QWidget::keyPressEvent(event);
    setPressed(true);
}

void Key::keyReleaseEvent(QKeyEvent* event) {
    if (!pressed || event->isAutoRepeat()) return QWidget::keyReleaseEvent(event);
    setPressed(false);
    activate();
}

}  // namespace Kit
