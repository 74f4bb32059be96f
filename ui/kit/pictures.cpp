#include "ui/kit/pictures.hpp"

#include <QImage>
#include <QPaintEngine>
#include <QPixmapCache>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace Paint {

namespace {

// Enough for all pictures of a window on a large screen with two device pixels per logical pixel.
constexpr int cacheKilobytes = 96 * 1024;

// Draws a picture over `target`, which is in device pixels, without smoothing. Meters repaint many
// small rectangles of a window at once. With all of them as the clip, or with smoothing on, the
// toolkit blends the picture line by line in several threads. With one rectangle at a time as the
// clip it copies whole blocks, which takes a tenth of the time.
void copyPicture(QPainter& painter, const QRectF& target, const QPixmap& picture) {
    const double ratio = ratioOf(painter);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.scale(1 / ratio, 1 / ratio);
    const QTransform& device = painter.deviceTransform();
    const QRegion parts = painter.paintEngine()->systemClip();
    if (parts.rectCount() < 2 || device.type() > QTransform::TxTranslate) {
        painter.drawPixmap(target, picture, picture.rect());
    } else {
        for (const QRect& part : parts) {
            const QRectF piece = QRectF(part).translated(-device.dx(), -device.dy()) & target;
            if (piece.isEmpty()) continue;
            painter.save();
            painter.setClipRect(piece, Qt::IntersectClip);
            painter.drawPixmap(target, picture, picture.rect());
            painter.restore();
        }
    }
    painter.restore();
}

// In device pixels. A picture that starts within a pixel covers a part of one more.
QSize sizeOf(const QSizeF& size, double ratio, QPointF offset) {
    return {static_cast<int>(std::ceil(size.width() * ratio + offset.x())),
            static_cast<int>(std::ceil(size.height() * ratio + offset.y()))};
}

void drawInto(QPixmap& pixmap, double ratio, QPointF offset, const Drawing& draw) {
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter canvas(&pixmap);
    canvas.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    canvas.translate(offset / ratio);
    draw(canvas);
    canvas.end();
    pixmap.setDevicePixelRatio(1);
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

QPixmap keptPicture(const QString& key, const QSizeF& size, double ratio, QPointF offset,
                    const Drawing& draw) {
    const QString whole = key + keyOf("", {size.width(), size.height(), ratio, offset.x(), offset.y()}, {});
    return kept(whole, [&] {
        QPixmap pixmap(sizeOf(size, ratio, offset));
        drawInto(pixmap, ratio, offset, draw);
        return withoutNeedlessAlpha(pixmap);
    });
}

}  // namespace

void cached(QPainter& painter, const QString& key, const QRectF& bounds, const Drawing& draw) {
    if (isClippedAway(painter, bounds)) return;
    const double ratio = ratioOf(painter);
    const QPointF offset = offsetInPixel(painter, bounds.topLeft());
    const QPixmap picture = keptPicture(key, bounds.size(), ratio, offset, draw);
    copyPicture(painter, QRectF(bounds.topLeft() * ratio - offset, picture.size()), picture);
}

void stretched(QPainter& painter, const QString& key, const QSizeF& size, const QRectF& target,
               const Drawing& draw) {
    const QPixmap picture = keptPicture(key, size, ratioOf(painter), {}, draw);
    copyPicture(painter, scaled(target, ratioOf(painter)), picture);
}

void Picture::draw(QPainter& painter, const QRectF& bounds, const Drawing& drawing) {
    if (isClippedAway(painter, bounds)) return;
    const double newRatio = ratioOf(painter);
    const QPointF newOffset = offsetInPixel(painter, bounds.topLeft());
    const QSize size = sizeOf(bounds.size(), newRatio, newOffset);
    if (!valid || pixmap.size() != size || ratio != newRatio || offset != newOffset) {
        if (pixmap.size() != size) pixmap = QPixmap(size);
        drawInto(pixmap, newRatio, newOffset, drawing);
        ratio = newRatio;
        offset = newOffset;
        valid = true;
    }
    copyPicture(painter, QRectF(bounds.topLeft() * ratio - offset, pixmap.size()), pixmap);
}

QPixmap kept(const QString& key, const std::function<QPixmap()>& make) {
    if (QPixmapCache::cacheLimit() < cacheKilobytes) QPixmapCache::setCacheLimit(cacheKilobytes);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = make();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QString keyOf(const char* what, std::initializer_list<double> numbers, const QColor& color) {
    QString key = QLatin1String(what);
    for (const double number : numbers)
        key += u' ' + QString::number(number);
    return key + u' ' + QString::number(color.rgba64(), 16);
}

double ratioOf(const QPainter& painter) {
    const QTransform& device = painter.deviceTransform();
    return std::hypot(device.m11(), device.m12());
}

// In eighths of a pixel: pictures for places that differ by less look the same, and share one.
QPointF offsetInPixel(const QPainter& painter, QPointF point) {
    constexpr double parts = 8;
    const QPointF device = painter.deviceTransform().map(point);
    const auto rest = [](double place) { return std::round((place - std::floor(place)) * parts) / parts; };
    return {rest(device.x()), rest(device.y())};
}

QRectF scaled(const QRectF& rect, double ratio) { return {rect.topLeft() * ratio, rect.size() * ratio}; }

bool isClippedAway(const QPainter& painter, const QRectF& bounds) {
    const QRegion parts = painter.paintEngine()->systemClip();
    return !parts.isEmpty() && !parts.intersects(painter.deviceTransform().mapRect(bounds).toAlignedRect());
}

}  // namespace Paint
