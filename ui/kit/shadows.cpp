#include "ui/kit/shadows.hpp"

#include "ui/kit/blend.hpp"
#include "ui/kit/layer.hpp"

#include <QImage>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace Paint {

namespace {

// The mean of the pixels within `radius`. Those beyond the edges count as 0.
class Mean {
public:
    explicit Mean(int radius)
        : scale((1U << shift) / static_cast<unsigned>(2 * radius + 1)) {}

    uchar of(unsigned sum) const { return static_cast<uchar>((sum * scale + (1U << (shift - 1))) >> shift); }

private:
    static constexpr int shift = 20;

    const unsigned scale;  // a multiplication takes less time than a division
};

// The rows or columns of a picture. Of a symmetric one only the first half is computed; the others mirror it.
struct Extent {
    int all;
    int computed;

    Extent(int all, bool symmetric)
        : all(all)
        , computed(symmetric ? (all + 1) / 2 : all) {}

    bool contains(int i) const { return i >= 0 && i < all; }
    int sourceOf(int i) const { return i < computed ? i : all - 1 - i; }
};

// `room` is for `computed` values and those within `radius` of them.
void boxBlurRow(const uchar* from, uchar* to, const Extent& extent, int radius, std::vector<uchar>& room) {
    const Mean mean(radius);
    const uchar* const leaving = room.data();
    uchar* const own = room.data() + radius + 1;
    const uchar* const entering = own + radius;
    std::copy_n(from, extent.computed, own);
    for (int i = extent.computed; i < extent.computed + radius; ++i)
        own[i] = extent.contains(i) ? from[extent.sourceOf(i)] : 0;
    unsigned sum = std::accumulate(leaving + 1, entering, 0U);
    for (int i = 0; i < extent.computed; ++i) {
        sum += unsigned{entering[i]} - leaving[i];
        to[i] = mean.of(sum);
    }
}

// All columns at once, row by row, as the pixels lie in memory.
void boxBlurColumns(const QImage& from, QImage& to, const Extent& rows, const Extent& columns, int radius) {
    const Mean mean(radius);
    const auto width = static_cast<std::size_t>(columns.computed);
    std::vector<unsigned> sums(width, 0);
    const auto add = [&](int row, unsigned factor) {
        if (!rows.contains(row)) return;
        const uchar* const line = from.constScanLine(rows.sourceOf(row));
        for (std::size_t x = 0; x < width; ++x)
            sums[x] += factor * line[x];
    };
    constexpr unsigned minus = -1U;
    for (int row = 0; row < radius; ++row)
        add(row, 1);
    for (int y = 0; y < rows.computed; ++y) {
        add(y + radius, 1);
        add(y - radius - 1, minus);
        uchar* const line = to.scanLine(y);
        for (std::size_t x = 0; x < width; ++x)
            line[x] = mean.of(sums[x]);
    }
}

struct Symmetry {
    bool leftToRight = false;
    bool topToBottom = false;
};

// Three box blurs in a row come close to a Gaussian blur. They reach 2.8 deviations.
void blur(QImage& alpha, double deviation, Symmetry symmetry = {}) {
    const int radius = std::max(1, static_cast<int>(std::lround(deviation * 0.94)));
    const Extent rows(alpha.height(), symmetry.topToBottom);
    const Extent columns(alpha.width(), symmetry.leftToRight);
    std::vector<uchar> room(static_cast<std::size_t>(columns.computed + 2 * radius + 1), 0);
    QImage other(alpha.size(), QImage::Format_Alpha8);
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < rows.computed; ++y)
            boxBlurRow(alpha.constScanLine(y), other.scanLine(y), columns, radius, room);
        boxBlurColumns(other, alpha, rows, columns, radius);
    }
    for (int y = 0; y < rows.computed; ++y) {
        uchar* const line = alpha.scanLine(y);
        std::reverse_copy(line, line + columns.all - columns.computed, line + columns.computed);
    }
    for (int y = rows.computed; y < rows.all; ++y)
        std::copy_n(alpha.constScanLine(rows.sourceOf(y)), columns.all, alpha.scanLine(y));
}

// The opacities of a rounded rectangle in a picture of that size, in pixels.
QImage softShape(const QSize& size, const QRectF& shape, double radius, double blurRadius) {
    // The toolkit fills this format without other threads; a dragged handle needs a few pictures.
    QImage drawn(size, QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    {
        QPainter canvas(&drawn);
        canvas.setRenderHint(QPainter::Antialiasing);
        Paint::fill(canvas, shape, radius, Qt::black);
    }
    QImage alpha = drawn.convertToFormat(QImage::Format_Alpha8);
    const QPointF offCentre = shape.center() - QRectF(alpha.rect()).center();
    if (blurRadius > 0) blur(alpha, blurRadius / 2, {offCentre.x() == 0, offCentre.y() == 0});
    return alpha;
}

int marginOf(double blurRadius) { return static_cast<int>(std::ceil(blurRadius * blurReach)) + 1; }

QPixmap tinted(const QImage& alpha, const QColor& color) {
    QImage image(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    const Shades shades = shadesOf(color);
    for (int y = 0; y < alpha.height(); ++y)
        std::transform(alpha.constScanLine(y), alpha.constScanLine(y) + alpha.width(),
                       reinterpret_cast<QRgb*>(image.scanLine(y)),
                       [&shades](uchar opacity) { return shades[opacity]; });
    return QPixmap::fromImage(std::move(image));
}

// A blurred rounded rectangle in device pixels. Its edges may lie within pixels. The straight edges of a
// large one are repeated when it is drawn: one picture serves all large sizes.
void drawSoft(QPainter& painter, const QRectF& shape, double radius, double blurRadius, const QColor& color) {
    const QRect pixels = shape.toAlignedRect();
    const int margin = marginOf(blurRadius);
    const int corner = margin + static_cast<int>(std::ceil(radius)) + 1;  // within the shape
    const QSize ends(margin + corner, margin + corner);
    const QSize size = pixels.size().boundedTo({2 * corner + 1, 2 * corner + 1});
    const QRectF local(shape.topLeft() - pixels.topLeft() + QPointF(margin, margin),
                       shape.size() - pixels.size() + size);
    const QString key =
        keyOf("soft", {local.x(), local.y(), local.width(), local.height(), radius, blurRadius}, color);
    const QPixmap picture = kept(key, [&] {
        const QImage alpha = softShape(size + QSize(2 * margin, 2 * margin), local, radius, blurRadius);
        return withLongEdges(tinted(alpha, color), ends);
    });
    drawExtended(painter, pixels.adjusted(-margin, -margin, margin, margin), picture, ends);
}

// A rectangle in device pixels, rounded to eighths of them: shapes whose places within a pixel differ by
// less look the same, and share a picture.
QRectF devicePlace(const QPainter& painter, const QRectF& rect) {
    constexpr double parts = 8;
    const QRectF place = painter.deviceTransform().mapRect(rect);
    const auto rounded = [](double edge) { return std::round(edge * parts) / parts; };
    return {QPointF(rounded(place.left()), rounded(place.top())),
            QPointF(rounded(place.right()), rounded(place.bottom()))};
}

}  // namespace

void fill(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(shape, radius, radius);
}

void fillKept(QPainter& painter, const QRectF& shape, double radius, const QColor& color) {
    dropShadow(painter, shape, radius, {color});
}

void edge(QPainter& painter, const QRectF& shape, double radius, const QBrush& brush, double width) {
    const double inset = width / 2;
    painter.setPen(QPen(brush, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(shape.adjusted(inset, inset, -inset, -inset), std::max(0.0, radius - inset),
                            std::max(0.0, radius - inset));
}

void dropShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow) {
    const double ratio = ratioOf(painter);
    drawSoft(painter, devicePlace(painter, shape.translated(0, shadow.offsetY)), radius * ratio,
             shadow.blur * ratio, shadow.color);
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

// Where the blurred and shifted shape leaves the shape uncovered. In the middle of a large shape that is
// nowhere, and its edges are repeated.
void innerShadow(QPainter& painter, const QRectF& shape, double radius, const Shadow& shadow) {
    if (isClippedAway(painter, shape)) return;
    const QRect place = pixelsOf(painter, shape);
    if (place.isEmpty()) return;
    const double ratio = ratioOf(painter);
    const double blurRadius = shadow.blur * ratio;
    const double offset = shadow.offsetY * ratio;
    const int depth = static_cast<int>(std::ceil(blurRadius * blurReach + std::abs(offset))) + 2;
    const int corner = depth + static_cast<int>(std::ceil(radius * ratio));
    const QSize size = place.size().boundedTo({2 * corner + 1, 2 * corner + 1});
    const QString key = keyOf(
        "inner", {double(size.width()), double(size.height()), radius, shadow.blur, shadow.offsetY, ratio},
        shadow.color);
    const QPixmap picture = kept(key, [&] {
        const int margin = marginOf(blurRadius);
        const int down = static_cast<int>(std::floor(offset));
        const QRectF shifted(QPointF(margin, margin + offset - down), size);
        const QImage covering =
            softShape(size + QSize(2 * margin, 2 * margin), shifted, radius * ratio, blurRadius);
        QImage alpha = softShape(size, QRectF(QPointF(), size), radius * ratio, 0);
        for (int y = 0; y < size.height(); ++y) {
            const int row = y + margin - down;
            if (row < 0 || row >= covering.height()) continue;
            const uchar* const covered = covering.constScanLine(row) + margin;
            uchar* const opacities = alpha.scanLine(y);
            for (int x = 0; x < size.width(); ++x)
                opacities[x] = static_cast<uchar>((opacities[x] * (255 - covered[x]) + 127) / 255);
        }
        return withLongEdges(tinted(alpha, shadow.color), {corner, corner});
    });
    drawExtended(painter, place, picture, {corner, corner}, depth);
}

void well(QPainter& painter, const QRectF& shape, double radius) {
    cached(painter, QStringLiteral("well ") + QString::number(radius), shape, [&](QPainter& canvas) {
        const QRectF local(QPointF(), shape.size());
        fill(canvas, local, radius, Theme::well);
        innerShadow(canvas, local, radius, {Theme::black(0.85), 7, 5});
        innerShadow(canvas, local, radius, {Theme::white(0.06), 1, -1});
        edge(canvas, local, radius, Theme::recessRim(local));
    });
}

void recess(QPainter& painter, const QRectF& shape, double radius, double top, double bottom) {
    fill(painter, shape, radius, Theme::vertical(shape, Theme::black(top), Theme::black(bottom)));
    innerShadow(painter, shape, radius, {Theme::black(0.35), 6, 3});
    edge(painter, shape, radius, Theme::recessRim(shape));
}

// The layers lie within each other. Each is drawn in the opacity that it has together with the wider ones.
void glowingStroke(QPainter& painter, const QPainterPath& path, const QPen& pen, const QColor& glow,
                   double blur) {
    constexpr int layers = 8;
    const double reach = pen.widthF() / 2 + blur + 1;
    layered(painter, path.boundingRect().adjusted(-reach, -reach, reach, reach), [&](QPainter& canvas) {
        canvas.setBrush(Qt::NoBrush);
        double transparency = 1;
        for (int layer = layers; layer > 0; --layer) {
            QPen soft = pen;
            soft.setWidthF(pen.widthF() + 2 * blur * layer / layers);
            const double strength = 1 - static_cast<double>(layer) / (layers + 1);
            transparency *= 1 - glow.alphaF() * strength * strength / layers * 2.2;
            soft.setColor(Theme::faded(glow, 1 - transparency));
            canvas.strokePath(path, soft);
        }
        canvas.strokePath(path, pen);
    });
}

void softCopy(QPainter& painter, const QString& key, const QRectF& bounds, const Shadow& shadow,
              const Drawing& draw) {
    if (!shadow.color.isValid() || shadow.color.alpha() == 0) return;
    const double ratio = ratioOf(painter);
    const double margin = std::ceil(shadow.blur * blurReach) + 1;
    const QSizeF size(bounds.width() + 2 * margin, bounds.height() + 2 * margin);
    const QString whole =
        keyOf("soft copy", {size.width(), size.height(), shadow.blur, ratio}, shadow.color) + key;
    const QPixmap picture = kept(whole, [&] {
        QImage alpha((size * ratio).toSize(), QImage::Format_Alpha8);
        alpha.fill(0);
        QPainter canvas(&alpha);
        canvas.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        canvas.scale(ratio, ratio);
        canvas.translate(margin, margin);
        draw(canvas);
        canvas.end();
        blur(alpha, shadow.blur * ratio / 2);
        return tinted(alpha, shadow.color);
    });
    const QPointF corner = bounds.topLeft() + QPointF(-margin, shadow.offsetY - margin);
    drawStretched(painter, {painter.deviceTransform().map(corner).toPoint(), picture.size()}, picture, {});
}

}  // namespace Paint
