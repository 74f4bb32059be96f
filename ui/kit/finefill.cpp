#include "ui/kit/finefill.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/theme.hpp"

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

// The pixels of a row, which repeat.
using Tile = std::array<QRgb, side>;

Tile tileOf(const QColor& color, const NoiseRow& noise) {
    constexpr float full = 255;
    Tile pixels;
    std::ranges::transform(noise, pixels.begin(),
                           [red = color.redF() * full, green = color.greenF() * full,
                            blue = color.blueF() * full](float threshold) {
                               const auto level = [threshold](float base) {
                                   return static_cast<QRgb>(static_cast<int>(base + threshold));
                               };
                               return 0xff000000 | level(red) << 16 | level(green) << 8 | level(blue);
                           });
    return pixels;
}

// A pixel of 10 bits for each of red, green and blue, of which the lowest two are below one level.
constexpr int fineParts = 4;
constexpr int fineBits = 10;

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

// The toolkit computes all rows of a shape, even those that are clipped away. A small shape has the same
// corner.
void drawCorner(QPainter& painter, const QRect& place, const QRect& square, double radius,
                const QRegion& exposed, const WritePixels& write) {
    QRect small(place.topLeft(), (2 * square.size()).boundedTo(place.size()));
    if (square.left() > place.left()) small.moveRight(place.right());
    if (square.top() > place.top()) small.moveBottom(place.bottom());
    QImage corner(square.size(), QImage::Format_ARGB32_Premultiplied);
    write(square.topLeft(), corner.rect(), corner);
    QPainter canvas(&corner);
    canvas.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    fillKept(canvas, small.translated(-square.topLeft()), radius, Qt::black);
    canvas.end();
    for (const QRect& part : exposed)
        painter.drawImage(part.topLeft(), corner, part.translated(-square.topLeft()));
}

// Fills a rounded rectangle, in device pixels, with the pixels that `write` writes.
void fillRounded(QPainter& painter, const QRect& place, double radius, const WritePixels& write) {
    const QRegion exposed = exposedBy(painter) & place;
    QRegion straight = exposed;
    painter.save();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    for (const QRect& square : cornersOf(place, radius)) {
        const QRegion round = QRegion(square) - withinCorners(place, radius);
        straight -= round;
        if (exposed.intersects(round)) drawCorner(painter, place, square, radius, exposed & round, write);
    }
    painter.restore();
    for (const QRect& part : straight)
        writePixels(painter, part, write);
}

}  // namespace

void FinePicture::draw(QPainter& painter, const QRectF& shape, double radius, const FineFill& filling) {
    const QRect place = pixelsOf(painter, shape);
    const QSize size = (place.size() + QSize(1, 1)) / 2;
    if (place.isEmpty()) return;
    if (size != drawnSize) fill(size, filling);
    drawnSize = size;
    fillRounded(painter, place, radius * ratioOf(painter), [&](QPoint from, const QRect& to, QImage& image) {
        write(from - place.topLeft(), to, image);
    });
}

// The rows are longer than `size` asks for: whole tiles of noise are drawn of them. While a window is
// resized, the picture grows a little many times. New memory would take longer than the colours, since the
// system clears it first.
void FinePicture::fill(const QSize& size, const FineFill& filling) {
    constexpr std::size_t tile = side / 2;
    const auto width = static_cast<std::size_t>(size.width());
    rowLength = (width + tile - 1) / tile * tile;
    const std::size_t length = rowLength * static_cast<std::size_t>(size.height());
    if (length > half.capacity()) {
        drop();
        half.reserve(length + length / 4);
    }
    half.resize(length);
    std::vector<float> light(width, 0);
    for (int y = 0; y < size.height(); ++y) {
        filling.light(size, y, light);
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
        std::ranges::transform(light, half.begin() + static_cast<std::ptrdiff_t>(rowLength) * y, pixel);
    }
}

void FinePicture::write(QPoint from, const QRect& to, QImage& image) const {
    static const std::array<FineNoiseRow, side> fineNoise = makeFineNoise();
    for (int y = 0; y < to.height(); ++y) {
        const int row = from.y() + y;
        enlarge(half.data() + rowLength * static_cast<std::size_t>(row / 2),
                fineNoise[static_cast<std::size_t>(row % side)], from.x(), to.width(),
                reinterpret_cast<QRgb*>(image.scanLine(to.y() + y)) + to.x());
    }
}

void fillFine(QPainter& painter, const QRectF& shape, double radius, const RowColor& color) {
    const QRect place = pixelsOf(painter, shape);
    if (place.isEmpty()) return;
    fillRounded(painter, place, radius * ratioOf(painter), [&](QPoint from, const QRect& to, QImage& image) {
        const QPoint start = from - place.topLeft();
        for (int y = 0; y < to.height(); ++y) {
            const int row = start.y() + y;
            const Tile tile =
                tileOf(color((row + 0.5) / place.height()), noise()[static_cast<std::size_t>(row % side)]);
            auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(to.y() + y)) + to.x();
            for (int x = 0; x < to.width(); ++x)
                pixels[x] = tile[static_cast<std::size_t>((start.x() + x) % side)];
        }
    });
}

QColor mixed(const QColor& from, const QColor& to, double part) {
    const auto between = [part](double a, double b) { return a + (b - a) * part; };
    return Theme::rgb(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                      between(from.blueF(), to.blueF()));
}

}  // namespace Paint
