#pragma once

#include <QColor>
#include <QPainter>
#include <QPixmap>
#include <QString>

#include <functional>
#include <initializer_list>

/// Drawing through pictures that are kept, since blurs and gradients cost too much to be made anew
/// for every repaint.
namespace Paint {

using Drawing = std::function<void(QPainter&)>;

/// Draws the picture that `draw` makes. It is made once for a key, size and pixel ratio, and kept
/// in a cache that all controls share. The origin of `draw` is the top left of `bounds`.
void cached(QPainter& painter, const QString& key, const QRectF& bounds, const Drawing& draw);

/// Draws a picture of that size, kept as by `cached`, stretched over `target` without smoothing. For
/// pictures in which neighbouring pixels hardly differ in the direction of the stretch.
void stretched(QPainter& painter, const QString& key, const QSizeF& size, const QRectF& target,
               const Drawing& draw);

/// A picture that its owner keeps. For content that changes too often to be worth a place in the
/// cache.
class Picture {
public:
    /// The next `draw` makes the picture anew.
    void outdate() { valid = false; }

    /// As `cached`. The picture is made anew when it is outdated, or when its size, its pixel ratio
    /// or its place between device pixels differs from the last time.
    void draw(QPainter& painter, const QRectF& bounds, const Drawing& drawing);

private:
    bool valid = false;
    QPixmap pixmap;
    double ratio = 0;
    QPointF offset;  // as by offsetInPixel
};

/// The cached picture for that key, made by `make` when it is not there.
QPixmap kept(const QString& key, const std::function<QPixmap()>& make);

QString keyOf(const char* what, std::initializer_list<double> numbers, const QColor& color);

/// Device pixels per logical pixel of the device that is drawn on. It need not be the screen of the
/// widget: a widget can be rendered into a picture of another ratio.
double ratioOf(const QPainter& painter);

/// How far a point lies from the top left corner of its device pixel, in device pixels.
QPointF offsetInPixel(const QPainter& painter, QPointF point);

QRectF scaled(const QRectF& rect, double ratio);

/// Whether the region that is being repainted lies outside of `bounds`.
bool isClippedAway(const QPainter& painter, const QRectF& bounds);

}  // namespace Paint
