#include "ui/pages/technical/tablerow.hpp"

#include "ui/kit/shadows.hpp"
#include "ui/kit/theme.hpp"

#include <QBoxLayout>
#include <QPainter>

namespace Corvane {

namespace {

constexpr int smallestGap = 10;
constexpr int sidePadding = 8;  // between the edges of the strip and the cells
constexpr double cornerRadius = 8;

}  // namespace

void TableRow::setCells(const std::vector<QWidget*>& cells) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(sidePadding, 0, sidePadding, 0);
    row->setSpacing(0);
    for (QWidget* const cell : cells) {
        if (cell != cells.front())
            row->addSpacerItem(new QSpacerItem(smallestGap, 0, QSizePolicy::MinimumExpanding));
        row->addWidget(cell);
    }
}

void TableRow::setTint(const QColor& color) {
    if (tint == color) return;
    tint = color;
    update();
}

void TableRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const double radius = cornerRadius * growth;
    Paint::fillKept(painter, rect(), radius, Theme::black(0.38));
    if (tint.isValid()) Paint::fillKept(painter, rect(), radius, tint);
}

}  // namespace Corvane
