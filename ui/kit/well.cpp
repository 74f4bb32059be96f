#include "ui/kit/well.hpp"

#include "ui/kit/shadows.hpp"

#include <algorithm>

namespace Kit {

Well::Well(double radius, QWidget* parent)
    : QWidget(parent)
    , radius(radius) {}

void Well::setGrowth(double factor) {
    growth = factor;
    update();
}

void Well::draw(QPainter& painter) const {
    painter.save();
    painter.scale(growth, growth);
    const QRectF area(QPointF(), QSizeF(size()) / growth);
    Paint::well(painter, area, std::min(radius, area.height() / 2));
    painter.restore();
}

void Well::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    draw(painter);
}

}  // namespace Kit
