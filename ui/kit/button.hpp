#pragma once

#include "ui/kit/control.hpp"

#include <functional>

namespace Kit {

/// A control that a click, the space bar or Return activates. All three act on release.
class Button : public Control {
public:
    using Action = std::function<void()>;

    explicit Button(QWidget* parent);

    QAccessible::Role accessibleRole() const override { return QAccessible::Button; }
    void activate() override;

    Action action;

protected:
    bool isPressed() const { return pressed; }

    void cancelInteraction() override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void setPressed(bool value);

    enum class Held { nothing, mouse, key };

    Held held = Held::nothing;
    bool pressed = false;  // held, and the mouse that holds it is over the button
};

}  // namespace Kit
