#include "ui/kit/well.hpp"

#include "ui/kit/shadows.hpp"

#include <QPainter>

#include <algorithm>

namespace Kit {

Well::Well(double radius, QWidget* parent)
    : QWidget(parent)
    , radius(radius) {}

void Well::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::well(painter, rect(), std::min(radius, height() / 2.0));
}

}  // namespace Kit
