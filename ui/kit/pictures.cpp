#include "ui/kit/pictures.hpp"

#include <QBasicTimer>
#include <QCache>
#include <QObject>
#include <QPaintEngine>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Paint {

namespace {

// Freed blocks stay with the program as long as one behind them is in use, unless it asks.
void giveFreedBlocksBack() {
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

// The pictures by their keys. The large ones are those of single pages: when nothing has drawn them for
// a while, their memory is given back. The toolkit's own cache would throw away small ones, too, while
// nothing happens.
class Cache final : public QObject {
public:
    QPixmap* find(const QString& key) {
        Kept* const kept = pictures.object(key);
        if (!kept) return nullptr;
        kept->unused = 0;
        return &kept->picture;
    }

    void insert(const QString& key, const QPixmap& picture) {
        constexpr int kilobyte = 1024;
        const qsizetype cost = 1 + qsizetype(picture.width()) * picture.height() * 4 / kilobyte;
        pictures.insert(key, new Kept{picture, cost >= largeKilobytes}, cost);
        if (cost >= largeKilobytes && !ticks.isActive()) ticks.start(tickMs, this);
    }

    void clear() { pictures.clear(); }

protected:
    void timerEvent(QTimerEvent*) override {
        bool anyLarge = false;
        bool anyDropped = false;
        for (const QString& key : pictures.keys()) {
            Kept& kept = *pictures.object(key);
            if (!kept.isLarge) continue;
            if (++kept.unused > unusedTicks)
                anyDropped |= pictures.remove(key);
            else
                anyLarge = true;
        }
        if (anyDropped) giveFreedBlocksBack();
        if (!anyLarge) ticks.stop();
    }

private:
    static constexpr int tickMs = 5000;
    static constexpr int unusedTicks = 2;
    static constexpr qsizetype largeKilobytes = 64;
    static constexpr qsizetype mostKilobytes = 49'152;  // all pages at two device pixels a point

    struct Kept {
        QPixmap picture;
        bool isLarge;
        int unused = 0;  // ticks since it was drawn
    };

    QCache<QString, Kept> pictures{mostKilobytes};
    QBasicTimer ticks;
};

Cache& cache() {
    static Cache pictures;
    return pictures;
}

// The picture that is drawn on, when its pixels can be written without the painter.
QImage* writtenBy(const QPainter& painter) {
    if (painter.opacity() < 1 || painter.compositionMode() != QPainter::CompositionMode_SourceOver)
        return nullptr;
    auto* const image = dynamic_cast<QImage*>(painter.paintEngine()->paintDevice());
    if (!image || !image->isDetached()) return nullptr;
    switch (image->format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return image;
    default:
        return nullptr;
    }
}

constexpr int edgeLength = 64;  // of a picture whose edges are repeated

// Calls `draw` for each part of `target` that is being repainted, in device pixels and without smoothing.
// A frame may repaint many small rectangles of a window at once. With all of them as the clip, or with
// smoothing on, the toolkit blends a picture line by line in several threads. With one rectangle at a time
// as the clip it copies whole blocks, which takes a tenth of the time.
template <class Draw>
void forEachPart(QPainter& painter, const QRect& target, Draw draw) {
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.setTransform(painter.deviceTransform().inverted(), true);
    const QRegion parts = painter.paintEngine()->systemClip();
    if (parts.rectCount() < 2) {
        const QRect piece = parts.isEmpty() ? target : parts.boundingRect() & target;
        if (!piece.isEmpty()) draw(piece);
    } else {
        for (const QRect& part : parts) {
            const QRect piece = part & target;
            if (piece.isEmpty()) continue;
            painter.save();
            painter.setClipRect(piece, Qt::IntersectClip);
            draw(piece);
            painter.restore();
        }
    }
    painter.restore();
}

void copyPicture(QPainter& painter, const QRect& target, const QPixmap& picture, const QRect& source) {
    forEachPart(painter, target, [&](const QRect&) { painter.drawPixmap(target, picture, source); });
}

// Covers `target` with copies of a part of a picture.
void repeatPicture(QPainter& painter, const QRect& target, const QPixmap& picture, const QRect& source) {
    const auto first = [](int from, int start, int length) {
        return from + (start - from) / length * length;
    };
    forEachPart(painter, target, [&](const QRect& part) {
        for (int y = first(target.top(), part.top(), source.height()); y <= part.bottom();
             y += source.height())
            for (int x = first(target.left(), part.left(), source.width()); x <= part.right();
                 x += source.width()) {
                const QRect place = QRect(QPoint(x, y), source.size()) & target;
                painter.drawPixmap(place.topLeft(), picture, {source.topLeft(), place.size()});
            }
    });
}

// A part of a picture in one direction, and where it is drawn.
struct Span {
    enum class Part { whole, first, middle, last };

    int from, length, to, extent;
    Part part;

    bool isMiddle() const { return part == Part::middle; }

    // Of an end: without what lies deeper than `depth` within the picture.
    Span outer(int depth) const {
        const int cut = extent - depth;
        if (cut <= 0 || part == Part::whole) return *this;
        const int start = part == Part::last ? cut : 0;
        return {from + start, depth, to + start, depth, part};
    }
};

// A picture's corners, edges and middle. One that has the length of its target is not divided.
std::vector<Span> spansOf(int length, int start, int extent, int end) {
    if (extent == length) return {{0, length, start, length, Span::Part::whole}};
    return {
        {0, end, start, end, Span::Part::first},
        {end, length - 2 * end, start + end, extent - 2 * end, Span::Part::middle},
        {length - end, end, start + extent - end, end, Span::Part::last},
    };
}

// Calls `draw` with the spans of each piece, across and down.
template <class Draw>
void forEachPiece(const QRect& target, const QPixmap& picture, const QSize& corner, Draw draw) {
    const auto across = spansOf(picture.width(), target.left(), target.width(), corner.width());
    const auto down = spansOf(picture.height(), target.top(), target.height(), corner.height());
    for (const Span& y : down)
        for (const Span& x : across)
            draw(x, y);
}

QRect placeOf(const Span& x, const Span& y) { return {x.to, y.to, x.extent, y.extent}; }

QRect sourceOf(const Span& x, const Span& y) { return {x.from, y.from, x.length, y.length}; }

// Draws on a canvas whose logical size exactly fills it.
void drawInto(QPixmap& pixmap, const QSizeF& size, const Drawing& draw) {
    pixmap.fill(Qt::transparent);
    QPainter canvas(&pixmap);
    canvas.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    canvas.scale(pixmap.width() / size.width(), pixmap.height() / size.height());
    draw(canvas);
}

// A picture without transparent pixels is kept in a format without alpha: it is copied instead of
// blended, which costs less.
QPixmap withoutNeedlessAlpha(const QPixmap& pixmap) {
    const QImage image = pixmap.toImage();
    for (int y = 0; y < image.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (!std::all_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) == 255; }))
            return pixmap;
    }
    return QPixmap::fromImage(image.convertToFormat(QImage::Format_RGB32));
}

}  // namespace

void cached(QPainter& painter, const QString& key, const QRectF& bounds, const Drawing& draw) {
    if (isClippedAway(painter, bounds)) return;
    const QRect place = pixelsOf(painter, bounds);
    if (place.isEmpty()) return;
    const QPixmap picture = cachedPicture(painter, key, bounds, draw);
    copyPicture(painter, place, picture, picture.rect());
}

QPixmap cachedPicture(const QPainter& painter, const QString& key, const QRectF& bounds,
                      const Drawing& draw) {
    const QRect place = pixelsOf(painter, bounds);
    const QSizeF size = bounds.size();
    const QString whole =
        key + keyOf("", {size.width(), size.height(), double(place.width()), double(place.height())}, {});
    return kept(whole, [&] {
        QPixmap pixmap(place.size());
        drawInto(pixmap, size, draw);
        return withoutNeedlessAlpha(pixmap);
    });
}

QRegion exposedBy(const QPainter& painter) {
    const QPaintEngine& engine = *painter.paintEngine();
    QRegion exposed = QRect(0, 0, engine.paintDevice()->width(), engine.paintDevice()->height());
    if (const QRegion clip = engine.systemClip(); !clip.isEmpty()) exposed &= clip;
    if (painter.hasClipping())
        exposed &= painter.deviceTransform().mapRect(painter.clipBoundingRect()).toAlignedRect();
    return exposed;
}

// Bands of this height stay in the processor's cache while they are written. The toolkit would copy a
// picture once more than writing its pixels takes. Where it must draw, it draws low ones without starting
// other threads.
void writePixels(QPainter& painter, const QRect& part, const WritePixels& write) {
    constexpr int bandHeight = 16;
    QImage* const image = writtenBy(painter);
    for (int top = part.top(); top <= part.bottom(); top += bandHeight) {
        const QRect band(part.left(), top, part.width(), std::min(bandHeight, part.bottom() + 1 - top));
        if (image) {
            write(band.topLeft(), band, *image);
            continue;
        }
        QImage written(band.size(), QImage::Format_RGB32);
        write(band.topLeft(), written.rect(), written);
        painter.save();
        painter.setTransform(painter.deviceTransform().inverted(), true);
        painter.drawImage(band.topLeft(), written);
        painter.restore();
    }
}

void copyPixels(const QImage& picture, QPoint from, const QRect& to, QImage& image) {
    for (int y = 0; y < to.height(); ++y)
        std::copy_n(reinterpret_cast<const QRgb*>(picture.constScanLine(from.y() + y)) + from.x(), to.width(),
                    reinterpret_cast<QRgb*>(image.scanLine(to.y() + y)) + to.x());
}

const QImage& Ground::picture(const QPainter& painter, const QRectF& bounds, const Drawing& drawing) {
    const QRect place = pixelsOf(painter, bounds);
    const QTransform now = painter.deviceTransform() * QTransform::fromTranslate(-place.x(), -place.y());
    if (valid && image.size() == place.size() && transform == now) return image;
    if (image.size() != place.size()) image = QImage(place.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    if (!image.isNull()) {
        QPainter canvas(&image);
        canvas.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        canvas.setTransform(now);
        drawing(canvas);
    }
    transform = now;
    valid = true;
    return image;
}

QPixmap withLongEdges(const QPixmap& picture, const QSize& corner) {
    const auto longer = [](int length, int end) {
        return length == 2 * end + 1 ? 2 * end + edgeLength : length;
    };
    const QSize size(longer(picture.width(), corner.width()), longer(picture.height(), corner.height()));
    if (size == picture.size()) return picture;
    QPixmap whole(size);
    whole.fill(Qt::transparent);
    QPainter canvas(&whole);
    drawStretched(canvas, whole.rect(), picture, corner);
    return whole;
}

void drawStretched(QPainter& painter, const QRect& target, const QPixmap& picture, const QSize& corner) {
    forEachPiece(target, picture, corner, [&](const Span& x, const Span& y) {
        copyPicture(painter, placeOf(x, y), picture, sourceOf(x, y));
    });
}

void drawExtended(QPainter& painter, const QRect& target, const QPixmap& picture, const QSize& corner,
                  std::optional<int> depth) {
    forEachPiece(target, picture, corner, [&](Span x, Span y) {
        if (depth) {
            if (x.isMiddle() && y.isMiddle()) return;
            if (x.isMiddle()) y = y.outer(*depth);
            if (y.isMiddle()) x = x.outer(*depth);
        }
        repeatPicture(painter, placeOf(x, y), picture, sourceOf(x, y));
    });
}

QPixmap kept(const QString& key, const std::function<QPixmap()>& make) {
    if (const QPixmap* const found = cache().find(key)) return *found;
    QPixmap pixmap = make();
    cache().insert(key, pixmap);
    return pixmap;
}

void dropKept() { cache().clear(); }

// Not for reading: written out in decimals, the numbers would take longer than drawing a small picture.
QString keyOf(const char* what, std::initializer_list<double> numbers, const QColor& color) {
    QString key = QLatin1String(what);
    const auto add = [&key](std::uint64_t bits) {
        for (int shift = 0; shift < 64; shift += 16)
            key += QChar(static_cast<char16_t>(bits >> shift));
    };
    constexpr double parts = 4096;
    for (const double number : numbers)
        add(static_cast<std::uint64_t>(std::llround(number * parts)));
    add(color.rgba64());
    return key;
}

// Pictures that fill whole device pixels are drawn with a ratio that is slightly off. Rounding lets them
// share the blurred shapes.
double ratioOf(const QPainter& painter) {
    constexpr double parts = 64;
    const QTransform& device = painter.deviceTransform();
    return std::round(std::hypot(device.m11(), device.m12()) * parts) / parts;
}

// As the toolkit rounds the rectangles to which it clips the painting of widgets.
QRect pixelsOf(const QPainter& painter, const QRectF& bounds) {
    return painter.deviceTransform().mapRect(bounds).toRect();
}

QRectF snapped(const QPainter& painter, const QRectF& bounds) {
    return painter.deviceTransform().inverted().mapRect(QRectF(pixelsOf(painter, bounds)));
}

QPointF onPixelRow(const QPainter& painter, QPointF point) {
    const QTransform& device = painter.deviceTransform();
    if (device.type() > QTransform::TxScale) return point;
    const QPointF place = device.map(point);
    return device.inverted().map(QPointF(place.x(), std::round(place.y())));
}

void fit(QPainter& painter, const QRectF& bounds) {
    const QRectF place = snapped(painter, bounds);
    painter.translate(place.topLeft());
    painter.scale(place.width() / bounds.width(), place.height() / bounds.height());
    painter.translate(-bounds.topLeft());
}

bool isClippedAway(const QPainter& painter, const QRectF& bounds) {
    const QRegion parts = painter.paintEngine()->systemClip();
    return !parts.isEmpty() && !parts.intersects(painter.deviceTransform().mapRect(bounds).toAlignedRect());
}

}  // namespace Paint
