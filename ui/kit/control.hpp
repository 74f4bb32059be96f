#pragma once

#include <QAccessible>
#include <QWidget>

#include <functional>

class QWheelEvent;

namespace Kit {

/// What all controls share: a drawing step, hover, a focus ring for keyboard users, and a name,
/// role and value for screen readers. A control never keeps what it shows as its own: it is told,
/// and reports what the user wants through its callbacks.
class Control : public QWidget {
public:
    explicit Control(QWidget* parent);

    virtual QAccessible::Role accessibleRole() const = 0;
    virtual QString valueText() const { return {}; }

    /// Whether it can be switched, and is.
    virtual bool isCheckable() const { return false; }
    virtual bool isChecked() const { return false; }

    /// What a click does.
    virtual void activate() {}

    /// Drawn so faintly; full at 1.
    void setOpacity(double value);

protected:
    struct Outline {
        QRectF shape;
        double radius;
    };

    virtual void paint(QPainter& painter) = 0;

    /// Where the focus ring lies.
    virtual Outline outline() const;

    /// Redraws, and tells screen readers.
    void shownChanged();

    /// The mouse or key that is held down no longer counts: the control is hidden or disabled.
    virtual void cancelInteraction() {}

    bool isHovered() const { return hovered && isEnabled(); }
    bool isFineTuned(Qt::KeyboardModifiers modifiers) const;

    void paintEvent(QPaintEvent* event) final;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool hovered = false;
    bool reachedByKeyboard = false;
    double opacity = 1;
};

/// Counts the notches of a wheel; fine wheels and touch pads send parts of them.
class Notches {
public:
    /// Positive away from the user.
    int take(const QWheelEvent& event);

private:
    int rest = 0;
};

/// A control that a click, the space bar or Return activates.
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
    bool pressed = false;  // as long as the mouse is over it
};

}  // namespace Kit
