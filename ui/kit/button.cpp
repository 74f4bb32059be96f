#include "ui/kit/button.hpp"

#include <QKeyEvent>
#include <QMouseEvent>

namespace Kit {

namespace {

bool activates(const QKeyEvent& event) {
    const int key = event.key();
    return !event.isAutoRepeat() && (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter);
}

}  // namespace

Button::Button(QWidget* parent)
    : Control(parent) {}

QAccessible::Role Button::accessibleRole() const {
    switch (use) {
    case Use::action:
        return QAccessible::Button;
    case Use::toggle:
        return QAccessible::CheckBox;
    case Use::choice:
        return QAccessible::RadioButton;
    }
    return QAccessible::Button;
}

void Button::activate() {
    if (isEnabled() && action) action();
}

void Button::setPressed(bool value) {
    if (pressed == value) return;
    pressed = value;
    update();
}

void Button::cancelInteraction() {
    held = Held::nothing;
    setPressed(false);
}

void Button::focusOutEvent(QFocusEvent* event) {
    if (held == Held::key) cancelInteraction();
    Control::focusOutEvent(event);
}

void Button::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    held = Held::mouse;
    setPressed(true);
}

void Button::mouseMoveEvent(QMouseEvent* event) {
    if (held == Held::mouse) setPressed(rect().contains(event->position().toPoint()));
}

void Button::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || held != Held::mouse) return;
    const bool over = rect().contains(event->position().toPoint());
    cancelInteraction();
    if (over) activate();
}

void Button::keyPressEvent(QKeyEvent* event) {
    if (!activates(*event)) return QWidget::keyPressEvent(event);
    held = Held::key;
    setPressed(true);
}

void Button::keyReleaseEvent(QKeyEvent* event) {
    if (!activates(*event) || held != Held::key) return QWidget::keyReleaseEvent(event);
    cancelInteraction();
    activate();
}

}  // namespace Kit
