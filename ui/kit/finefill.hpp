#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QSize>

#include <functional>
#include <span>

namespace Paint {

/// Colours that change slowly from place to place.
struct FineFill {
    std::function<QColor(double)> color;  // of a row: 0 at the top, 1 at the bottom

    /// The opacities of white light over one row of `size`, in device pixels. Left out: none.
    std::function<void(const QSize& size, int row, std::span<float> opacities)> light = {};
};

/// Fills a rounded rectangle. The colours are computed more finely than the 8 bits that a pixel has for
/// each, and fixed noise of one level is added, so that no contours show. Only while drawing a kept
/// picture.
void fillFine(QPainter& painter, const QRectF& shape, double radius, const FineFill& filling);

/// The colour between two.
QColor mixed(const QColor& from, const QColor& to, double part);

}  // namespace Paint
