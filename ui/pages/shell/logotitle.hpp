#pragma once

#include "ui/kit/control.hpp"

#include <functional>

namespace Corvane {

/// The logo and the name of the program. The Tab key reaches it.
class LogoTitle final : public Kit::Control {
public:
    /// The widget extends beyond the logo by this much at the left, above and below. The logo's glow
    /// needs it.
    static constexpr int bleed = 10;

    explicit LogoTitle(QWidget* parent);

    /// A click that began with Alt and Control held, or Return with both. All other presses go on to the
    /// parent, which moves the window; double clicks do not, so that they do not zoom it.
    std::function<void()> onSecretClick;

    QAccessible::Role accessibleRole() const override { return QAccessible::Graphic; }

protected:
    void paint(QPainter& painter) override;
    Outline outline() const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool pressed = false;  // with Alt and Control held
};

}  // namespace Corvane
