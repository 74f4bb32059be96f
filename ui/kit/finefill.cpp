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
    for (std::size_t i = 0; i < side / 2; ++i) {
        const auto pixel = [](std::uint32_t sum) {
            return 0xff000000 | (sum >> 6 & 0xff0000) | (sum >> 4 & 0xff00) | (sum >> 2 & 0xff);
        };
        pixels[2 * i] = pixel(half[i] + noise[2 * i]);
        pixels[2 * i + 1] = pixel(half[i] + noise[2 * i + 1]);
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

// What is being repainted, in device pixels.
QRegion exposedBy(const QPainter& painter) {
    const QPaintEngine& engine = *painter.paintEngine();
    QRegion exposed = QRect(0, 0, engine.paintDevice()->width(), engine.paintDevice()->height());
    if (const QRegion clip = engine.systemClip(); !clip.isEmpty()) exposed &= clip;
    if (painter.hasClipping())
        exposed &= painter.deviceTransform().mapRect(painter.clipBoundingRect()).toAlignedRect();
    return exposed;
}

// The squares of a rounded rectangle in which its edge is round.
QRegion cornersOf(const QRect& place, double radius) {
    const QSize size = QSize(1, 1) * static_cast<int>(std::ceil(radius));
    QRegion corners;
    for (const int x : {place.left(), place.right() + 1 - size.width()})
        for (const int y : {place.top(), place.bottom() + 1 - size.height()})
            corners += QRect(QPoint(x, y), size);
    return corners;
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
    const QRegion corners = cornersOf(place, corner);
    painter.save();
    painter.setTransform(painter.deviceTransform().inverted(), true);
    for (const QRect& part : exposed - corners)
        drawRectangle(painter, place, part);
    painter.setPen(Qt::NoPen);
    for (const QRect& part : exposed& corners) {
        QBrush brush(pixelsIn(place, part));
        brush.setTransform(QTransform::fromTranslate(part.x(), part.y()));
        painter.setBrush(brush);
        painter.setClipRect(part);
        painter.drawRoundedRect(place, corner, corner);
    }
    painter.restore();
}

// The toolkit would copy a picture once more than writing its pixels takes.
void FinePicture::drawRectangle(QPainter& painter, const QRect& place, const QRect& part) const {
    if (QImage* const image = writtenBy(painter))
        write(part.topLeft() - place.topLeft(), part, *image);
    else
        painter.drawImage(part.topLeft(), pixelsIn(place, part));
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
