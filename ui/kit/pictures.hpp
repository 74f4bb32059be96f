#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QRegion>
#include <QString>
#include <QTransform>

#include <functional>
#include <initializer_list>
#include <optional>

/// Drawing through pictures that are kept, since blurs and gradients cost too much to be made anew
/// for every repaint.
namespace Paint {

using Drawing = std::function<void(QPainter&)>;

/// Draws the picture that `draw` makes. It is made once for a key, size and pixel ratio, and kept
/// in a cache that all controls share. The origin of `draw` is the top left of `bounds`. The picture
/// covers whole device pixels: what `draw` draws along the edges of `bounds` is crisp at every ratio.
void cached(QPainter& painter, const QString& key, const QRectF& bounds, const Drawing& draw);

/// The picture that `cached` draws. `bounds` covers some device pixels.
QPixmap cachedPicture(const QPainter& painter, const QString& key, const QRectF& bounds, const Drawing& draw);

/// What is being repainted, in device pixels.
QRegion exposedBy(const QPainter& painter);

/// Writes opaque pixels into `to` of an image: those of the device from `from` on.
using WritePixels = std::function<void(QPoint from, const QRect& to, QImage& image)>;

/// Puts what `write` writes on a part that is being repainted, in device pixels.
void writePixels(QPainter& painter, const QRect& part, const WritePixels& write);

/// Copies the pixels of an opaque part of `picture` from `from` on to `to` of an image.
void copyPixels(const QImage& picture, QPoint from, const QRect& to, QImage& image);

/// What lies under things that move, as its owner keeps it: the opaque pixels that drawing it on the device
/// itself would give.
class Ground {
public:
    /// The next `picture` is made anew.
    void outdate() { valid = false; }

    /// Of the device pixels that `bounds` covers. `drawing` is in the coordinates of the painter.
    const QImage& picture(const QPainter& painter, const QRectF& bounds, const Drawing& drawing);

private:
    bool valid = false;
    QImage image;
    QTransform transform;  // from the painter's coordinates to the picture's pixels
};

/// The cached picture for that key, made by `make` when it is not there. One of 64 KB or more goes when
/// nothing has drawn it for 10 to 15 s.
QPixmap kept(const QString& key, const std::function<QPixmap()>& make);

/// All cached pictures are made anew when they are drawn next.
void dropKept();

/// Draws a picture over `target`, which is in device pixels. The picture is stretched without smoothing
/// between its corners, which keep their size.
void drawStretched(QPainter& painter, const QRect& target, const QPixmap& picture, const QSize& corner);

/// `picture` with each edge that is one pixel long between two corners made longer, for `drawExtended`.
QPixmap withLongEdges(const QPixmap& picture, const QSize& corner);

/// As `drawStretched`, but the edges are repeated instead of stretched, which takes a tenth of the time:
/// the toolkit copies several pixels at once. With a `depth`, what lies that far within the edges between the
/// corners is transparent in the picture.
void drawExtended(QPainter& painter, const QRect& target, const QPixmap& picture, const QSize& corner,
                  std::optional<int> depth = std::nullopt);

QString keyOf(const char* what, std::initializer_list<double> numbers, const QColor& color);

/// Device pixels per logical pixel of the device that is drawn on. It need not be the screen of the
/// widget: a widget can be rendered into a picture of another ratio.
double ratioOf(const QPainter& painter);

/// The device pixels that a rectangle covers, its edges rounded as the toolkit rounds those of widgets.
QRect pixelsOf(const QPainter& painter, const QRectF& bounds);

/// `bounds` with its edges moved to device pixels.
QRectF snapped(const QPainter& painter, const QRectF& bounds);

/// The point moved up or down to the nearest edge of a row of device pixels, unless the painter is turned.
QPointF onPixelRow(const QPainter& painter, QPointF point);

/// Moves and scales the painter by less than a pixel, so that the edges of `bounds` lie on device pixels.
void fit(QPainter& painter, const QRectF& bounds);

/// Whether the region that is being repainted lies outside of `bounds`.
bool isClippedAway(const QPainter& painter, const QRectF& bounds);

}  // namespace Paint
