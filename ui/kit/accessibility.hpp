#pragma once

namespace Kit {

class Control;

/// Lets screen readers see the controls. Does nothing the second time.
void installAccessibility();

void notifyValueChanged(Control& control);

}  // namespace Kit
