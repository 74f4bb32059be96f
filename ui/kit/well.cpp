#include "ui/kit/well.hpp"

#include "ui/kit/shadows.hpp"

#include <algorithm>

namespace Kit {

Well::Well(double radius, QWidget* parent)
    : QWidget(parent)
    , radius(radius) {}

void Well::draw(QPainter& painter) const { Paint::well(painter, rect(), std::min(radius, height() / 2.0)); }

void Well::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    draw(painter);
}

}  // namespace Kit
