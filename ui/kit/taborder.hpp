#pragma once

#include <vector>

class QWidget;

namespace Kit {

/// The widgets within `root` that the Tab key reaches now, in the order in which they are read: that
/// of the layouts, and by place where there is no layout.
std::vector<QWidget*> tabOrder(QWidget& root);

/// Gives the focus to the widget that follows the focused one in that order, or precedes it, or to the
/// first or last one. Returns false when there is none.
bool moveFocus(const std::vector<QWidget*>& order, bool forward);

}  // namespace Kit
