#include "ui/kit/finefill.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/theme.hpp"

#include <QBrush>
#include <QPaintEngine>
#include <QRegion>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace Paint {

namespace {

constexpr int side = 64;
using NoiseRow = std::array<float, side>;

// Thresholds below one level, spread evenly and in a random order.
std::array<NoiseRow, side> makeNoise() {
    std::array<float, std::size_t{side} * side> all;
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = (static_cast<float>(i) + 0.5F) / all.size();
    std::shuffle(all.begin(), all.end(), std::mt19937(1));  // the same at each start
    std::array<NoiseRow, side> rows;
    for (std::size_t i = 0; i < all.size(); ++i)
        rows[i / side][i % side] = all[i];
    return rows;
}

const std::array<NoiseRow, side>& noise() {
    static const std::array<NoiseRow, side> rows = makeNoise();
    return rows;
}

void fillRow(std::span<QRgb> pixels, const QColor& color, std::span<const float> light,
             const NoiseRow& noise) {
    constexpr float full = 255;
    const float red = color.redF() * full;
    const float green = color.greenF() * full;
    const float blue = color.blueF() * full;
    for (std::size_t start = 0; start < pixels.size(); start += side) {
        const std::size_t count = std::min<std::size_t>(side, pixels.size() - start);
        for (std::size_t i = 0; i < count; ++i) {
            const float white = light[start + i];
            const auto level = [white, rest = noise[i]](float base) {
                return static_cast<int>(base + white * (full - base) + rest);
            };
            pixels[start + i] =
                static_cast<QRgb>(0xff << 24 | level(red) << 16 | level(green) << 8 | level(blue));
        }
    }
}

QImage filledImage(const QSize& size, const FineFill& filling) {
    QImage image(size, QImage::Format_RGB32);
    const auto width = static_cast<std::size_t>(size.width());
    std::vector<float> light(width, 0);
    for (int y = 0; y < size.height(); ++y) {
        if (filling.light) filling.light(size, y, light);
        fillRow({reinterpret_cast<QRgb*>(image.scanLine(y)), width}, filling.color((y + 0.5) / size.height()),
                light, noise()[static_cast<std::size_t>(y % side)]);
    }
    return image;
}

// A pixel of 10 bits for each of red, green and blue, of which the lowest two are below one level.
constexpr int fineParts = 4;
constexpr int fineBits = 10;

// The rows are longer than `size` asks for: whole tiles of noise are drawn of them.
QImage finePicture(const QSize& size, const FineFill& filling) {
    constexpr int tile = side / 2;
    QImage image((size.width() + tile - 1) / tile * tile, size.height(), QImage::Format_RGB30);
    std::vector<float> light(static_cast<std::size_t>(size.width()), 0);
    for (int y = 0; y < size.height(); ++y) {
        if (filling.light) filling.light(size, y, light);
        const QColor color = filling.color((y + 0.5) / size.height());
        constexpr float full = 255 * fineParts;
        constexpr float nearest = 0.5;  // before the fraction is cut off
        const auto pixel = [red = color.redF() * full, green = color.greenF() * full,
                            blue = color.blueF() * full](float white) {
            const auto level = [white](float base) {
                return static_cast<std::uint32_t>(static_cast<int>(base + white * (full - base) + nearest));
            };
            return level(red) << 2 * fineBits | level(green) << fineBits | level(blue);
        };
        std::ranges::transform(light, reinterpret_cast<std::uint32_t*>(image.scanLine(y)), pixel);
    }
    return image;
}

// The noise in parts of a level, the same for all three colours of a pixel.
using FineNoiseRow = std::array<std::uint32_t, side>;

std::array<FineNoiseRow, side> makeFineNoise() {
    constexpr std::uint32_t everyColor = 1 << 2 * fineBits | 1 << fineBits | 1;
    std::array<FineNoiseRow, side> rows;
    for (std::size_t y = 0; y < side; ++y)
        std::ranges::transform(noise()[y], rows[y].begin(), [](float threshold) {
            return static_cast<std::uint32_t>(threshold * fineParts) * everyColor;
        });
    return rows;
}

// One tile of a row from half as many pixels.
void enlarge(const std::uint32_t* half, const FineNoiseRow& noise, QRgb* pixels) {
    FineNoiseRow fine;
    for (std::size_t i = 0; i < side / 2; ++i)
        fine[2 * i] = fine[2 * i + 1] = half[i];
    for (std::size_t i = 0; i < side; ++i) {
        const std::uint32_t sum = fine[i] + noise[i];
        pixels[i] = 0xff000000 | (sum >> 6 & 0xff0000) | (sum >> 4 & 0xff00) | (sum >> 2 & 0xff);
    }
}

// Pixels `from` to `from` + `count` of a row.
void enlarge(const std::uint32_t* half, const FineNoiseRow& noise, int from, int count, QRgb* pixels) {
    for (const int end = from + count; from < end;) {
        const int tile = from / side * side;
        const int piece = std::min(tile + side, end) - from;
        if (piece == side) {
            enlarge(half + tile / 2, noise, pixels);
        } else {
            std::array<QRgb, side> whole;
            enlarge(half + tile / 2, noise, whole.data());
            std::copy_n(whole.begin() + (from - tile), piece, pixels);
        }
        from += piece;
        pixels += piece;
    }
}

// The squares of a rounded rectangle in which its edge is round.
std::array<QRect, 4> cornersOf(const QRect& place, double radius) {
    const int size = static_cast<int>(std::ceil(radius));
    const int right = place.right() + 1 - size;
    const int bottom = place.bottom() + 1 - size;
    return {QRect(place.left(), place.top(), size, size), QRect(right, place.top(), size, size),
            QRect(place.left(), bottom, size, size), QRect(right, bottom, size, size)};
}

// What lies that far within a rounded rectangle is within its round edges.
QRect withinCorners(const QRect& place, double radius) {
    const int inset = static_cast<int>(std::ceil(radius * (1 - std::sqrt(0.5)))) + 1;
    return place.adjusted(inset, inset, -inset, -inset);
}

}  // namespace

void FinePicture::draw(QPainter& painter, const QRectF& shape, double radius, const FineFill& filling) {
    const QRect place = pixelsOf(painter, shape);
    const QSize size = (place.size() + QSize(1, 1)) / 2;
    if (place.isEmpty()) return;
    if (size != drawnSize) half = finePicture(size, filling);
    drawnSize = size;
    const QRegion exposed = exposedBy(painter) & place;
    const double corner = radius * ratioOf(painter);
    painter.save();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    painter.setPen(Qt::NoPen);
    QRegion straight = exposed;
    for (const QRect& square : cornersOf(place, corner)) {
        const QRegion round = QRegion(square) - withinCorners(place, corner);
        straight -= round;
        if (exposed.intersects(round)) drawCorner(painter, place, square, corner, exposed.intersected(round));
    }
    painter.restore();
    for (const QRect& part : straight)
        writePixels(painter, part, [&](QPoint from, const QRect& to, QImage& image) {
            write(from - place.topLeft(), to, image);
        });
}

// The toolkit computes all rows of a shape, even those that are clipped away. A small shape has the same
// corner.
void FinePicture::drawCorner(QPainter& painter, const QRect& place, const QRect& square, double radius,
                             const QRegion& exposed) const {
    QRect small(place.topLeft(), (2 * square.size()).boundedTo(place.size()));
    if (square.left() > place.left()) small.moveRight(place.right());
    if (square.top() > place.top()) small.moveBottom(place.bottom());
    QBrush brush(pixelsIn(place, square));
    brush.setTransform(QTransform::fromTranslate(square.x(), square.y()));
    painter.save();
    painter.setBrush(brush);
    for (const QRect& part : exposed) {
        painter.setClipRect(part);
        painter.drawRoundedRect(small, radius, radius);
    }
    painter.restore();
}

QImage FinePicture::pixelsIn(const QRect& place, const QRect& part) const {
    QImage image(part.size(), QImage::Format_RGB32);
    write(part.topLeft() - place.topLeft(), image.rect(), image);
    return image;
}

void FinePicture::write(QPoint from, const QRect& to, QImage& image) const {
    static const std::array<FineNoiseRow, side> fineNoise = makeFineNoise();
    for (int y = 0; y < to.height(); ++y) {
        const int row = from.y() + y;
        enlarge(reinterpret_cast<const std::uint32_t*>(half.constScanLine(row / 2)),
                fineNoise[static_cast<std::size_t>(row % side)], from.x(), to.width(),
                reinterpret_cast<QRgb*>(image.scanLine(to.y() + y)) + to.x());
    }
}

void fillFine(QPainter& painter, const QRectF& shape, double radius, const FineFill& filling) {
    const QRect place = pixelsOf(painter, shape);
    if (place.isEmpty()) return;
    const QImage image = filledImage(place.size(), filling);
    const double corner = radius * ratioOf(painter);
    painter.save();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    if (corner > 0) {
        QBrush brush(image);
        brush.setTransform(QTransform::fromTranslate(place.x(), place.y()));
        painter.setPen(Qt::NoPen);
        painter.setBrush(brush);
        painter.drawRoundedRect(place, corner, corner);
    } else {
        painter.drawImage(place, image);
    }
    painter.restore();
}

QColor mixed(const QColor& from, const QColor& to, double part) {
    const auto between = [part](double a, double b) { return a + (b - a) * part; };
    return Theme::rgb(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                      between(from.blueF(), to.blueF()));
}

}  // namespace Paint
