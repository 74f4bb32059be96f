#include "ui/kit/painting.hpp"

#include <QFontMetricsF>
#include <QImage>
#include <QPaintEngine>
#include <QPainterPath>
#include <QPixmapCache>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Paint {

namespace {

// Three box blurs in a row come close to a Gaussian; its deviation is half the blur.
constexpr double reach = 1.5;

void boxBlurLine(const uchar* from, uchar* to, int count, qsizetype stride, int radius) {
    const int window = 2 * radius + 1;
    int sum = 0;
    const auto at = [&](int i) { return i < 0 || i >= count ? 0 : from[i * stride]; };
    for (int i = -radius; i <= radius; ++i)
        sum += at(i);
    for (int i = 0; i < count; ++i) {
        to[i * stride] = static_cast<uchar>((sum + window / 2) / window);
        sum += at(i + radius + 1) - at(i - radius);
    }
}

void blur(QImage& alpha, double deviation) {
    const int radius = std::max(1, static_cast<int>(std::lround(deviation * 0.94)));
    QImage other(alpha.size(), QImage::Format_Alpha8);
    const int width = alpha.width();
    const int height = alpha.height();
    const qsizetype stride = alpha.bytesPerLine();
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < height; ++y)
            boxBlurLine(alpha.constScanLine(y), other.scanLine(y), width, 1, radius);
        const uchar* const from = other.constBits();
        uchar* const to = alpha.bits();
        for (int x = 0; x < width; ++x)
            boxBlurLine(from + x, to + x, height, stride, radius);
    }
}

QImage tinted(const QImage& alpha, const QColor& color) {
    QImage image(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, alpha);
    return image;
}

QString keyOf(const char* what, std::initializer_list<double> numbers, const QColor& color) {
    QString key = QLatin1String(what);
    for (const double number : numbers)
        key += u' ' + QString::number(number);
    return key + u' ' + QString::number(color.rgba64(), 16);
}

// Room for a window's pictures on a large screen at ratio 2.
constexpr int cacheKilobytes = 96 * 1024;

QPixmap kept(const QString& key, const std::function<QPixmap()>& make) {
    if (QPixmapCache::cacheLimit() < cacheKilobytes) QPixmapCache::setCacheLimit(cacheKilobytes);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) return pixmap;
    pixmap = make();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

// A blurred rounded rectangle. Where it is large its straight edges are one pixel long, to be
// stretched. All in device pixels.
struct Soft {
    QPixmap picture;
    int margin;  // from the picture's edge to the shape's
    int corner;  // what must not be stretched, from the picture's edge
};

Soft softShape(QSizeF size, double radius, double blurRadius, const QColor& color) {
    const int margin = static_cast<int>(std::ceil(blurRadius * reach)) + 1;
    const int corner = 2 * margin + static_cast<int>(std::ceil(radius));
    const double limit = 2 * (corner - margin) + 1;
    const QSizeF drawn(std::min(size.width(), limit), std::min(size.height(), limit));
    const QString key = keyOf("soft", {drawn.width(), drawn.height(), radius, blurRadius}, color);
    const QPixmap picture = kept(key, [&] {
        QImage alpha(static_cast<int>(std::ceil(drawn.width())) + 2 * margin,
                     static_cast<int>(std::ceil(drawn.height())) + 2 * margin, QImage::Format_Alpha8);
        alpha.fill(0);
        {
            QPainter painter(&alpha);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::black);
            painter.drawRoundedRect(QRectF(QPointF(margin, margin), drawn), radius, radius);
        }
        if (blurRadius > 0) blur(alpha, blurRadius / 2);
        return QPixmap::fromImage(tinted(alpha, color));
    });
    return {picture, margin, corner};
}

// Stretches the middle rows and columns of a picture over `target`.
void drawStretched(QPainter& painter, const QRectF& target, const Soft& soft) {
    const QSizeF size = soft.picture.size();
    const bool wide = target.width() > size.width() + 0.5;
    const bool high = target.height() > size.height() + 0.5;
    if (!wide && !high) return painter.drawPixmap(target.topLeft(), soft.picture);
    const double corner = soft.corner;
    struct Span {
        double from, length, to, extent;
    };
    const auto spans = [corner](bool stretch, double length, double start, double extent) {
        if (!stretch) return std::vector<Span>{{0, length, start, length}};
        return std::vector<Span>{
            {0, corner, start, corner},
            {corner, length - 2 * corner, start + corner, extent - 2 * corner},
            {length - corner, corner, start + extent - corner, corner},
        };
    };
    for (const Span& y : spans(high, size.height(), target.top(), target.height()))
        for (const Span& x : spans(wide, size.width(), target.left(), target.width()))
            painter.drawPixmap(QRectF(x.to, y.to, x.extent, y.extent), soft.picture,
                               QRectF(x.from, y.from, x.length, y.length));
}

// Of what the painter finally draws on, which is not its widget's screen where a widget renders
// into a picture.
double ratioOf(const QPainter& painter) {
    const QTransform& device = painter.deviceTransform();
    return std::hypot(device.m11(), device.m12());
}

// Whether nothing of that place is to be repainted.
bool isOutOfSight(const QPainter& painter, const QRectF& bounds) {
    const QRegion parts = painter.paintEngine()->systemClip();
    return !parts.isEmpty() && !parts.intersects(painter.deviceTransform().mapRect(bounds).toAlignedRect());
}

// A picture over `target`, which is in device pixels, without smoothing. Meters repaint many small
// parts of a window at once; through them all, or with smoothing asked for, a picture is drawn line
// by line by several threads. Into one part at a time it is copied, which takes a tenth of the time.
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

// How far a point lies from the corner of its device pixel, in device pixels.
QPointF withinPixel(const QPainter& painter, QPointF point) {
    constexpr double parts = 8;
    const QPointF device = painter.deviceTransform().map(point);
    const auto rest = [](double place) { return std::round((place - std::floor(place)) * parts) / parts; };
    return {rest(device.x()), rest(device.y())};
}

QSize sizeOf(const QSizeF& size, double ratio, QPointF rest) {
    return {static_cast<int>(std::ceil(size.width() * ratio + rest.x())),
            static_cast<int>(std::ceil(size.height() * ratio + rest.y()))};
}

// In device pixels.
void paintInto(QPixmap& pixmap, double ratio, QPointF rest, const std::function<void(QPainter&)>& paint) {
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter ink(&pixmap);
    ink.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    ink.translate(rest / ratio);
    paint(ink);
    ink.end();
    pixmap.setDevicePixelRatio(1);
}

// Where nothing shines through, copying costs less than blending.
QPixmap withoutNeedlessAlpha(const QPixmap& pixmap) {
    const QImage image = pixmap.toImage();
    for (int y = 0; y < image.height(); ++y) {
        const auto* const line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (!std::all_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) == 255; }))
            return pixmap;
    }
    return QPixmap::fromImage(image.convertToFormat(QImage::Format_RGB32));
}

QPixmap keptPicture(const QString& key, const QSizeF& size, double ratio, QPointF rest,
                    const std::function<void(QPainter&)>& paint) {
    const QString whole = key + keyOf("", {size.width(), size.height(), ratio, rest.x(), rest.y()}, {});
    return kept(whole, [&] {
        QPixmap pixmap(sizeOf(size, ratio, rest));
        paintInto(pixmap, ratio, rest, paint);
        return withoutNeedlessAlpha(pixmap);
    });
}

QRectF scaled(const QRectF& rect, double ratio) { return {rect.topLeft() * ratio, rect.size() * ratio}; }

void drawCharacters(QPainter& painter, QPointF baseline, const QString& text, const QFont& font,
                    double digit) {
    const QFontMetricsF metrics(font);
    double x = baseline.x();
    for (const QChar c : text) {
        const double own = metrics.horizontalAdvance(c);
        const double room = c.isDigit() ? digit : own;
        painter.drawText(QPointF(x + (room - own) / 2, baseline.y()), QString(c));
        x += room;
    }
}

double widestDigit(const QFont& font) {
    const QFontMetricsF metrics(font);
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

void drawLine(QPainter& painter, QPointF baseline, const QString& text, const TextStyle& style,
              const QColor& color) {
    painter.setFont(style.font);
    painter.setPen(color);
    if (style.tabularDigits)
        drawCharacters(painter, baseline, text, style.font, widestDigit(style.font));
    else
        painter.drawText(baseline, text);
}

}  // namespace

void fill(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(shape, radius, radius);
}

void edge(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush, double width) {
    const double inset = width / 2;
    painter.setPen(QPen(brush, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(shape.adjusted(inset, inset, -inset, -inset), std::max(0.0, radius - inset),
                            std::max(0.0, radius - inset));
}

// Stretched parts must meet on whole pixels, or seams show between them.
void dropShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow) {
    const double ratio = ratioOf(painter);
    const QRectF cast = shape.translated(0, shadow.offsetY);
    const QRectF device = scaled(cast.translated(-withinPixel(painter, cast.topLeft()) / ratio), ratio);
    const Soft soft = softShape(device.size(), radius * ratio, shadow.blur * ratio, shadow.color);
    const double margin = soft.margin;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);  // nothing of it has an edge
    painter.scale(1 / ratio, 1 / ratio);
    drawStretched(painter, device.adjusted(-margin, -margin, margin, margin), soft);
    painter.restore();
}

void trim(QPainter& painter, const QRectF& shape, double radius) {
    constexpr double far = 1000;
    QPainterPath outside;
    outside.addRect(shape.adjusted(-far, -far, far, far));
    outside.addRoundedRect(shape, radius, radius);
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(outside, Qt::black);
    painter.restore();
}

// What the blurred shape leaves uncovered, kept inside the sharp shape.
void innerShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow) {
    const QString key = keyOf("inner", {radius, shadow.blur, shadow.offsetY}, shadow.color);
    cached(painter, key, shape, [&](QPainter& ink) {
        const QRectF local(QPointF(), shape.size());
        ink.fillRect(local, shadow.color);
        ink.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        dropShadow(ink, local, radius, {Qt::black, shadow.blur, shadow.offsetY});
        trim(ink, local, radius);
    });
}

void well(QPainter& painter, const QRectF& shape, double radius) {
    cached(painter, QStringLiteral("well ") + QString::number(radius), shape, [&](QPainter& ink) {
        const QRectF local(QPointF(), shape.size());
        fill(ink, local, radius, Theme::well);
        innerShadow(ink, local, radius, {Theme::black(0.85), 7, 5});
        innerShadow(ink, local, radius, {Theme::white(0.06), 1, -1});
        edge(ink, local, radius, Theme::recessRim(local));
    });
}

void glowingStroke(QPainter& painter, const QPainterPath& path, const QPen& pen, const QColor& glow,
                   double blur) {
    constexpr int layers = 8;
    painter.setBrush(Qt::NoBrush);
    for (int layer = layers; layer > 0; --layer) {
        const double spread = 2 * blur * layer / layers;
        QPen soft = pen;
        soft.setWidthF(pen.widthF() + spread);
        const double strength = 1 - static_cast<double>(layer) / (layers + 1);
        soft.setColor(Theme::faded(glow, glow.alphaF() * strength * strength / layers * 2.2));
        painter.strokePath(path, soft);
    }
    painter.strokePath(path, pen);
}

void softCopy(QPainter& painter, const QString& key, const QRectF& bounds, const Shadow& shadow,
              const std::function<void(QPainter&)>& paint) {
    if (!shadow.color.isValid() || shadow.color.alpha() == 0) return;
    const double ratio = ratioOf(painter);
    const double margin = std::ceil(shadow.blur * reach) + 1;
    const QRectF around = bounds.adjusted(-margin, -margin, margin, margin);
    const QString whole =
        keyOf("soft copy", {around.width(), around.height(), shadow.blur, ratio}, shadow.color) + key;
    const QPixmap picture = kept(whole, [&] {
        QImage alpha((around.size() * ratio).toSize(), QImage::Format_Alpha8);
        alpha.setDevicePixelRatio(ratio);
        alpha.fill(0);
        QPainter ink(&alpha);
        ink.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        ink.translate(margin, margin);
        paint(ink);
        ink.end();
        alpha.setDevicePixelRatio(1);
        blur(alpha, shadow.blur * ratio / 2);
        QPixmap pixmap = QPixmap::fromImage(tinted(alpha, shadow.color));
        pixmap.setDevicePixelRatio(ratio);
        return pixmap;
    });
    painter.drawPixmap(around.topLeft() + QPointF(0, shadow.offsetY), picture);
}

void cached(QPainter& painter, const QString& key, const QRectF& bounds,
            const std::function<void(QPainter&)>& paint) {
    if (isOutOfSight(painter, bounds)) return;
    const double ratio = ratioOf(painter);
    const QPointF rest = withinPixel(painter, bounds.topLeft());
    const QPixmap picture = keptPicture(key, bounds.size(), ratio, rest, paint);
    copyPicture(painter, QRectF(bounds.topLeft() * ratio - rest, picture.size()), picture);
}

void stretched(QPainter& painter, const QString& key, const QSizeF& size, const QRectF& target,
               const std::function<void(QPainter&)>& paint) {
    const QPixmap picture = keptPicture(key, size, ratioOf(painter), {}, paint);
    copyPicture(painter, scaled(target, ratioOf(painter)), picture);
}

void Picture::draw(QPainter& painter, const QRectF& bounds, const std::function<void(QPainter&)>& paint) {
    if (isOutOfSight(painter, bounds)) return;
    const double scale = ratioOf(painter);
    const QPointF place = withinPixel(painter, bounds.topLeft());
    const QSize size = sizeOf(bounds.size(), scale, place);
    if (!valid || pixmap.size() != size || ratio != scale || rest != place) {
        if (pixmap.size() != size) pixmap = QPixmap(size);
        paintInto(pixmap, scale, place, paint);
        ratio = scale;
        rest = place;
        valid = true;
    }
    copyPicture(painter, QRectF(bounds.topLeft() * scale - place, pixmap.size()), pixmap);
}

double textWidth(const QString& text, const TextStyle& style) {
    const QFontMetricsF metrics(style.font);
    if (!style.tabularDigits) return metrics.horizontalAdvance(text);
    const double digit = widestDigit(style.font);
    double width = 0;
    for (const QChar c : text)
        width += c.isDigit() ? digit : metrics.horizontalAdvance(c);
    return width;
}

void text(QPainter& painter, const QRectF& bounds, Qt::Alignment alignment, const QString& whole,
          const TextStyle& style) {
    const double spill = style.font.pixelSize() + style.shadow.blur * reach;
    if (isOutOfSight(painter, bounds.adjusted(-spill, -spill, spill, spill))) return;
    const QFontMetricsF metrics(style.font);
    QString text = whole;
    double width = textWidth(text, style);
    if (width > bounds.width() + 0.5) {
        text = metrics.elidedText(whole, Qt::ElideRight, bounds.width());
        width = textWidth(text, style);
    }
    // Tracking follows every letter; the last one's is no part of what is seen.
    const double seen = width - style.font.letterSpacing();
    double x = bounds.left();
    if (alignment & Qt::AlignHCenter) x = bounds.center().x() - seen / 2;
    if (alignment & Qt::AlignRight) x = bounds.right() - seen;
    // Centred by the capitals, since captions and numbers have no descenders.
    double baseline = bounds.center().y() + metrics.capHeight() / 2;
    if (alignment & Qt::AlignTop) baseline = bounds.top() + metrics.ascent();
    if (alignment & Qt::AlignBottom) baseline = bounds.bottom() - metrics.descent();
    const QPointF start(x, std::round(baseline));
    const QRectF line(start - QPointF(0, metrics.ascent()), QSizeF(width, metrics.height()));
    softCopy(painter, style.font.key() + text, line, style.shadow,
             [&](QPainter& ink) { drawLine(ink, QPointF(0, metrics.ascent()), text, style, Qt::black); });
    drawLine(painter, start, text, style, style.color);
}

}  // namespace Paint
