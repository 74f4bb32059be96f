#pragma once

#include <QAccessible>
#include <QString>
#include <QStringList>

class QWidget;

namespace Kit {

class Control;

/// Makes the controls known to screen readers. To be called once, after the application object exists and
/// before the first widget does: what the toolkit has made by itself is never replaced.
void installAccessibility();

/// Of a widget that is no control. To be called before the widget has a name.
void setRole(QWidget& widget, QAccessible::Role role);

/// What the names of all controls within `part` begin with for screen readers: "Compressor". Contexts
/// add up from the outside in.
void setContext(QWidget& part, const QStringList& context);

/// The name of a control or caption with its contexts: "Saída 2, Compressor, Threshold". What is in it
/// twice is said once.
QString fullName(const QWidget& widget);

// Tell screen readers what has changed: the value or the on state of a control; a part of it; the part
// that the focus is on; whether its list is open. Of controls that are not on the screen nothing is told.
void notifyValueChanged(Control& control);
void notifyPartChanged(Control& control, int part);
void notifyPartFocused(Control& control, int part);
void notifyExpanded(Control& control);

}  // namespace Kit
