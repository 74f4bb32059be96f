#include "ui/pages/shared/growth.hpp"

#include "ui/kit/growing.hpp"

#include <QLayout>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Corvane {

namespace {

int grown(int length, double factor) {
    return length >= QWIDGETSIZE_MAX ? length : static_cast<int>(std::lround(length * factor));
}

QSize grown(QSize size, double factor) { return {grown(size.width(), factor), grown(size.height(), factor)}; }

void setGrowth(const QWidget& page, double factor) {
    for (QWidget* const each : page.findChildren<QWidget*>())
        if (auto* const growing = dynamic_cast<Kit::Growing*>(each)) growing->setGrowth(factor);
}

}  // namespace

void Growth::remember() {
    extents.clear();
    gaps.clear();
    spacers.clear();
    for (QWidget* const each : page.findChildren<QWidget*>())
        if (each->minimumSize() != QSize(0, 0) ||
            each->maximumSize() != QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX))
            extents.push_back({each, each->minimumSize(), each->maximumSize()});
    for (QLayout* const layout : page.findChildren<QLayout*>()) {
        gaps.push_back({layout, layout->contentsMargins(), layout->spacing()});
        for (int i = 0; i < layout->count(); ++i)
            if (QSpacerItem* const item = layout->itemAt(i)->spacerItem())
                spacers.push_back({item, item->sizeHint(), item->sizePolicy()});
    }
}

void Growth::apply(double factor) {
    undo();
    if (factor == 1) return;
    remember();
    applied = true;
    setGrowth(page, factor);
    for (const auto& [widget, least, most] : extents) {
        widget->setMinimumSize(grown(least, factor));
        widget->setMaximumSize(grown(most, factor));
    }
    for (const auto& [layout, margins, spacing] : gaps) {
        layout->setContentsMargins((QMarginsF(margins) * factor).toMargins());
        layout->setSpacing(grown(spacing, factor));
    }
    for (const auto& [item, size, policy] : spacers)
        item->changeSize(grown(size.width(), factor), grown(size.height(), factor), policy.horizontalPolicy(),
                         policy.verticalPolicy());
}

// From the inside out: a layout learns the new sizes of its widgets when their layouts are active.
void Growth::settle() const {
    QList<QWidget*> inside = page.findChildren<QWidget*>();
    std::ranges::reverse(inside);
    for (const QWidget* const each : std::as_const(inside))
        if (QLayout* const layout = each->layout()) layout->activate();
}

void Growth::undo() {
    if (!applied) return;
    applied = false;
    setGrowth(page, 1);
    for (const auto& [widget, least, most] : extents) {
        if (!widget) continue;
        widget->setMinimumSize(least);
        widget->setMaximumSize(most);
    }
    for (const auto& [layout, margins, spacing] : gaps) {
        layout->setContentsMargins(margins);
        layout->setSpacing(spacing);
    }
    for (const auto& [item, size, policy] : spacers)
        item->changeSize(size.width(), size.height(), policy.horizontalPolicy(), policy.verticalPolicy());
}

}  // namespace Corvane
