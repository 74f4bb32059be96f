#include "ui/kit/finefill.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/theme.hpp"

#include <QBrush>
#include <QImage>

#include <algorithm>
#include <array>
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
    static const std::array<NoiseRow, side> noise = makeNoise();
    QImage image(size, QImage::Format_RGB32);
    const auto width = static_cast<std::size_t>(size.width());
    std::vector<float> light(width, 0);
    for (int y = 0; y < size.height(); ++y) {
        if (filling.light) filling.light(size, y, light);
        fillRow({reinterpret_cast<QRgb*>(image.scanLine(y)), width}, filling.color((y + 0.5) / size.height()),
                light, noise[static_cast<std::size_t>(y % side)]);
    }
    return image;
}

}  // namespace

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
