#pragma once

#include <QPointF>
#include <QtMath>

#include <cmath>

namespace Kit {

/// The point at `radius` from `centre`, at an angle that is counted clockwise from straight up.
inline QPointF onCircle(QPointF centre, double radius, double degrees) {
    const double angle = qDegreesToRadians(degrees);
    return centre + QPointF(radius * std::sin(angle), -radius * std::cos(angle));
}

}  // namespace Kit
