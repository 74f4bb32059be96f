#pragma once

#include "ui/kit/theme.hpp"

#include <QPainter>
#include <QPixmap>
#include <QString>

#include <functional>

/// Drawing steps that the controls share. Every shape is a rounded rectangle: capsules and circles
/// are those whose radius is half their height.
namespace Paint {

/// A blurred shadow. Its blur reaches about one and a half times `blur` beyond the shape.
struct Shadow {
    QColor color;
    double blur = 0;
    double offsetY = 0;
};

void fill(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush);

/// A line along the inside of the edge.
void edge(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush, double width = 1);

/// Outside and under the shape; draw it first.
void dropShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow);

/// Inside the shape, as its own edge would cast it.
void innerShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow);

/// Erases what lies outside of the shape; for pictures under construction.
void trim(QPainter& painter, const QRectF& shape, double radius);

/// The recessed background of read-outs.
void well(QPainter& painter, const QRectF& shape, double radius);

/// A soft light along a stroke.
void glowingStroke(QPainter& painter, const QPainterPath& path, const QPen& pen, const QColor& glow,
                   double blur);

/// Draws `paint` through a picture that is kept for its key, size and the painter's pixel ratio.
/// `paint` draws in coordinates whose origin is the top left of `bounds`.
void cached(QPainter& painter, const QString& key, const QRectF& bounds,
            const std::function<void(QPainter&)>& paint);

/// A picture that its owner keeps, for what changes too often to be worth a place in the cache.
class Picture {
public:
    /// What it shows has changed.
    void outdate() { valid = false; }

    /// As `cached`; `paint` is called where the picture is outdated, or lies or is scaled
    /// differently.
    void draw(QPainter& painter, const QRectF& bounds, const std::function<void(QPainter&)>& paint);

private:
    bool valid = false;
    QPixmap pixmap;
    double ratio = 0;
    QPointF rest;  // from the corner of its first pixel to its own, in device pixels
};

/// A picture of that size, kept as by `cached`, stretched over `target` without smoothing; for what
/// changes slowly along the way.
void stretched(QPainter& painter, const QString& key, const QSizeF& size, const QRectF& target,
               const std::function<void(QPainter&)>& paint);

/// The shadow or glow of what `paint` draws; like `cached`, kept for its key. Draws nothing where
/// the shadow has no colour.
void softCopy(QPainter& painter, const QString& key, const QRectF& bounds, const Shadow& shadow,
              const std::function<void(QPainter&)>& paint);

struct TextStyle {
    QFont font;
    QColor color;
    Shadow shadow;               // none where its colour is transparent
    bool tabularDigits = false;  // all digits as wide as the widest
};

double textWidth(const QString& text, const TextStyle& style);

/// One line, elided where it is too long for `bounds`.
void text(QPainter& painter, const QRectF& bounds, Qt::Alignment alignment, const QString& text,
          const TextStyle& style);

}  // namespace Paint
