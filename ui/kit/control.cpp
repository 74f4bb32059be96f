#include "ui/kit/control.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/painting.hpp"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

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
    paint(painter);
    if (!reachedByKeyboard || !hasFocus()) return;
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

// A window or a menu that comes and goes does not change how the focus was reached.
void Control::focusInEvent(QFocusEvent* event) {
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        reachedByKeyboard = reason != Qt::MouseFocusReason;
    update();
}

void Control::focusOutEvent(QFocusEvent*) { update(); }

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

// Alt turns a wheel sideways.
int Notches::take(const QWheelEvent& event) {
    const QPoint turn = event.angleDelta();
    rest += turn.y() != 0 ? turn.y() : turn.x();
    const int whole = rest / QWheelEvent::DefaultDeltasPerStep;
    rest -= whole * QWheelEvent::DefaultDeltasPerStep;
    return whole;
}

namespace {

bool activates(const QKeyEvent& event) {
    const int key = event.key();
    return !event.isAutoRepeat() && (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter);
}

}  // namespace

Button::Button(QWidget* parent)
    : Control(parent) {}

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
