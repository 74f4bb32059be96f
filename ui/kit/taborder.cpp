#include "ui/kit/taborder.hpp"

#include <QApplication>
#include <QLayout>
#include <QWidget>

#include <algorithm>

namespace Kit {

namespace {

bool isStop(const QWidget& widget) {
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isEnabled() && !widget.focusProxy();
}

void collect(QWidget& widget, std::vector<QWidget*>& order);

void collect(const QLayout& layout, std::vector<QWidget*>& order, std::vector<QWidget*>& seen) {
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem& item = *layout.itemAt(i);
        if (const QLayout* const inner = item.layout()) {
            collect(*inner, order, seen);
        } else if (QWidget* const widget = item.widget()) {
            seen.push_back(widget);
            collect(*widget, order);
        }
    }
}

void collect(QWidget& widget, std::vector<QWidget*>& order) {
    if (!widget.isVisible()) return;
    if (isStop(widget)) order.push_back(&widget);
    std::vector<QWidget*> seen;
    if (const QLayout* const layout = widget.layout()) collect(*layout, order, seen);
    std::vector<QWidget*> others;
    for (QObject* const child : widget.children())
        if (auto* const each = qobject_cast<QWidget*>(child);
            each && !each->isWindow() && std::ranges::count(seen, each) == 0)
            others.push_back(each);
    std::ranges::stable_sort(others, [](const QWidget* a, const QWidget* b) {
        return std::pair(a->y(), a->x()) < std::pair(b->y(), b->x());
    });
    for (QWidget* const each : others)
        collect(*each, order);
}

}  // namespace

std::vector<QWidget*> tabOrder(QWidget& root) {
    std::vector<QWidget*> order;
    collect(root, order);
    return order;
}

bool moveFocus(const std::vector<QWidget*>& order, bool forward) {
    if (order.empty()) return false;
    const auto found = std::ranges::find(order, QApplication::focusWidget());
    const auto count = static_cast<int>(order.size());
    int next = forward ? 0 : count - 1;
    if (found != order.end())
        next = (static_cast<int>(found - order.begin()) + (forward ? 1 : count - 1)) % count;
    order[static_cast<std::size_t>(next)]->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

}  // namespace Kit
