#include "ui/kit/finefill.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/theme.hpp"

#include <QBrush>
#include <QPaintEngine>
#include <QRegion>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

namespace Paint {

namespace {

constexpr int side = 64;
using NoiseRow = std::array<float, side>;

// Thresholds below one level, spread evenly and in a random order.
std::array<NoiseRow, side> makeNoise() {
    std::array<float, side * side> all;
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
        const auto pixel = [red = color.redF() * full, green = color.greenF() * full,
                            blue = color.blueF() * full](float white) {
            const auto level = [white](float base) {
                return static_cast<std::uint32_t>(static_cast<int>(base + white * (full - base) + 0.5F));
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
    for (std::size_t i = 0; i < side; ++i)
        fine[i] = half[i / 2];
    for (std::size_t i = 0; i < side; ++i) {
        const std::uint32_t sum = fine[i] + noise[i];
        pixels[i] = 0xff000000 | (sum >> 6 & 0xff0000) | (sum >> 4 & 0xff00) | (sum >> 2 & 0xff);
    }
}

}  // namespace

// In bands that are low enough for the toolkit to draw them without starting other threads.
void FinePicture::draw(QPainter& painter, const QRectF& shape, double radius, const FineFill& filling) {
    constexpr int bandHeight = 32;
    const QRect place = pixelsOf(painter, shape);
    const QSize size = (place.size() + QSize(1, 1)) / 2;
    if (place.isEmpty()) return;
    if (size != drawnSize) half = finePicture(size, filling);
    drawnSize = size;
    const QPaintEngine& engine = *painter.paintEngine();
    QRegion exposed = QRect(0, 0, engine.paintDevice()->width(), engine.paintDevice()->height()) & place;
    if (const QRegion clip = engine.systemClip(); !clip.isEmpty()) exposed &= clip;
    if (painter.hasClipping())
        exposed &= painter.deviceTransform().mapRect(painter.clipBoundingRect()).toAlignedRect();
    const double corner = radius * ratioOf(painter);
    painter.save();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    for (const QRect& part : exposed)
        for (int top = part.top(); top <= part.bottom(); top += bandHeight) {
            const int height = std::min(bandHeight, part.bottom() + 1 - top);
            drawBand(painter, place, {part.left(), top, part.width(), height}, corner);
        }
    painter.restore();
}

void FinePicture::drawBand(QPainter& painter, const QRect& place, const QRect& band, double corner) const {
    static const std::array<FineNoiseRow, side> fineNoise = makeFineNoise();
    const QPoint offset = band.topLeft() - place.topLeft();
    const int tile = offset.x() / side;
    const int tiles = (offset.x() + band.width() - 1) / side + 1 - tile;
    const QRect tiled(place.x() + tile * side, band.y(), tiles * side, band.height());
    QImage image(tiled.size(), QImage::Format_RGB32);
    for (int y = 0; y < band.height(); ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(half.constScanLine((offset.y() + y) / 2));
        auto* pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
        row += tile * side / 2;
        for (int i = 0; i < tiles; ++i, row += side / 2, pixels += side)
            enlarge(row, fineNoise[static_cast<std::size_t>((offset.y() + y) % side)], pixels);
    }
    painter.save();
    painter.setClipRect(band, Qt::IntersectClip);
    const double depth = std::min(band.top() - place.top(), place.bottom() - band.bottom());
    if (depth >= corner) {
        painter.drawImage(tiled.topLeft(), image);
    } else {
        QBrush brush(image);
        brush.setTransform(QTransform::fromTranslate(tiled.x(), tiled.y()));
        painter.setPen(Qt::NoPen);
        painter.setBrush(brush);
        painter.drawRoundedRect(place, corner, corner);
    }
    painter.restore();
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
