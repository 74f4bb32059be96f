#pragma once

#include "ui/kit/pictures.hpp"
#include "ui/kit/theme.hpp"

#include <QPainter>
#include <QString>

/// Shapes, and the shadows and glows that they cast. Every shape is a rounded rectangle: capsules and
/// circles are those whose radius is half their height.
namespace Paint {

/// A blurred shadow; one without offset and in a light colour is a glow.
struct Shadow {
    QColor color;
    double blur = 0;
    double offsetY = 0;
};

/// How far a shadow's blur extends beyond the shape, in multiples of `blur`.
constexpr double blurReach = 1.5;

void fill(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush);

/// Fills the shape through a kept picture, which starts no threads. The edges lie on eighths of a device
/// pixel.
void fillKept(QPainter& painter, const QRectF& shape, double radius, const QColor& color);

/// A line along the inside of the edge.
void edge(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush, double width = 1);

/// The shadow that the shape casts on what lies behind it. Draw it before the shape.
void dropShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow);

/// The shadow that the edge of the shape casts into it. Draw it after the fill.
void innerShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow);

/// Erases everything outside of the shape. Only while drawing a kept picture.
void trim(QPainter& painter, const QRectF& shape, double radius);

/// The recessed background of read-outs.
void well(QPainter& painter, const QRectF& shape, double radius);

/// A shallow recess in a panel, on which dim text can be read. `top` and `bottom` are the opacities of its
/// shade there: a panel is brighter at its top. Only while drawing a kept picture.
void recess(QPainter& painter, const QRectF& shape, double radius, double top, double bottom);

/// A stroke that glows.
void glowingStroke(QPainter& painter, const QPainterPath& path, const QPen& pen, const QColor& glow,
                   double blur);

/// The shadow or glow of what `draw` draws, kept for its key as by `cached`. Draws nothing when the
/// shadow has no colour.
void softCopy(QPainter& painter, const QString& key, const QRectF& bounds, const Shadow& shadow,
              const Drawing& draw);

}  // namespace Paint
