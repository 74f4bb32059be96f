#pragma once

#include "ui/kit/control.hpp"

#include <functional>

namespace Kit {

/// A control that a click, the space bar or Return activates. All three act on release.
class Button : public Control {
public:
    using Action = std::function<void()>;

    /// What a click does: something, switch something on and off, or choose one of a group.
    enum class Use { action, toggle, choice };

    explicit Button(QWidget* parent);

    void setUse(Use value) { use = value; }
    QAccessible::Role accessibleRole() const override;
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

    Use use = Use::action;
    Held held = Held::nothing;
    bool pressed = false;  // held, and the mouse that holds it is over the button
};

}  // namespace Kit
