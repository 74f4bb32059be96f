#pragma once

#include "ui/kit/focusring.hpp"
#include "ui/kit/growing.hpp"

#include <QAccessible>
#include <QWidget>

namespace Kit {

/// What all controls share: a drawing step, hover, a focus ring for keyboard users, and a name,
/// role and value for screen readers. A control does not change what it shows by itself: it reports
/// what the user wants through its callbacks, and its owner sets the new state.
///
/// A control draws itself in `area`, in logical pixels of its usual size. When it has grown, the widget
/// is larger than that by `growth`.
class Control : public QWidget, public Growing {
public:
    explicit Control(QWidget* parent);

    void setGrowth(double factor) override;
    double growth() const { return factor; }

    virtual QAccessible::Role accessibleRole() const = 0;
    virtual QString valueText() const { return {}; }

    /// What screen readers say of the value.
    virtual QString spokenText() const { return valueText(); }

    /// Whether it is on. The one that is chosen of a group is on, too.
    virtual bool isChecked() const { return false; }

    /// Whether its list is open.
    virtual bool isExpanded() const { return false; }

    /// What a click does.
    virtual void activate() {}

    /// Forgets the mouse button or key that is held down, and closes its list: the control is hidden or
    /// disabled, or what it shows belongs to something else now.
    virtual void cancelInteraction() {}

    /// The opacity that the control is drawn with, from 0 to 1.
    void setOpacity(double value);

protected:
    using Outline = Kit::Outline;

    /// With Option (Alt) or Shift held, drags and arrow keys change a value by this factor of what
    /// they change otherwise.
    static constexpr double fineFactor = 0.2;
    static bool isFine(Qt::KeyboardModifiers modifiers);
    static double factorFor(Qt::KeyboardModifiers modifiers) { return isFine(modifiers) ? fineFactor : 1; }

    virtual void paint(QPainter& painter) = 0;

    QRectF area() const { return {0, 0, width() / factor, height() / factor}; }

    /// From the area to the widget, and back.
    QRectF grown(const QRectF& place) const;
    QPointF grown(QPointF place) const { return place * factor; }
    QPointF inArea(QPointF place) const { return place / factor; }

    /// What the focus ring surrounds.
    virtual Outline outline() const;

    /// Redraws, and tells screen readers.
    void stateChanged();

    bool isHovered() const { return hovered && isEnabled(); }

    void paintEvent(QPaintEvent* event) final;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    Outline grownOutline() const;

    bool hovered = false;
    bool reachedByKeyboard = false;
    FocusRing ring{*this, [this] { return grownOutline(); }};
    double opacity = 1;
    double factor = 1;  // growth
};

}  // namespace Kit
