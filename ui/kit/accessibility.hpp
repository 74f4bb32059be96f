#pragma once

namespace Kit {

class Control;

/// Makes the controls known to screen readers. Further calls do nothing.
void installAccessibility();

/// Tells screen readers that the value or the on state of a control has changed.
void notifyValueChanged(Control& control);

}  // namespace Kit
