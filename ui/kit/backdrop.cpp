#include "ui/kit/backdrop.hpp"

#include "ui/kit/finefill.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace Kit {

namespace {

constexpr double softness = 150;

// The blur is far wider than that of any shadow. The shape is therefore drawn small and enlarged, which
// looks the same and costs little.
QImage lightShape(const QSizeF& size) {
    constexpr double reduction = 16;
    QImage image((size / reduction).toSize().expandedTo(QSize(8, 8)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF small(QPointF(), image.size());
    const double w = small.width();
    const double h = small.height();
    Paint::softCopy(painter, QStringLiteral("light"), small, {Theme::white(1), softness / reduction, 0},
                    [&](QPainter& canvas) {
                        QPainterPath path(QPointF(0.38 * w, -h));
                        path.lineTo(0.62 * w, -h);
                        path.lineTo(0.62 * w, 0);
                        path.quadTo(QPointF(0.5 * w, 0.42 * h), QPointF(0.38 * w, 0));
                        canvas.fillPath(path, Theme::white(1));
                    });
    return image;
}

// The opacities of a row of the light shape, enlarged to `size`.
void lightRow(const QImage& shape, const QSize& size, int row, std::span<float> opacities) {
    constexpr double brightest = 0.06;
    const auto placeIn = [](double place, int extent, int count) {
        const double at = std::clamp(place / extent * count - 0.5, 0.0, count - 1.001);
        return std::pair(static_cast<int>(at), static_cast<float>(at - std::floor(at)));
    };
    const auto [above, down] = placeIn(row + 0.5, size.height(), shape.height());
    std::vector<float> column(static_cast<std::size_t>(shape.width()));
    for (int x = 0; x < shape.width(); ++x) {
        const auto upper = static_cast<float>(qAlpha(shape.pixel(x, above)));
        const auto lower = static_cast<float>(qAlpha(shape.pixel(x, above + 1)));
        column[static_cast<std::size_t>(x)] =
            (upper + (lower - upper) * down) * static_cast<float>(brightest / 255);
    }
    for (std::size_t x = 0; x < opacities.size(); ++x) {
        const auto [before, across] = placeIn(static_cast<double>(x) + 0.5, size.width(), shape.width());
        const auto* const pair = &column[static_cast<std::size_t>(before)];
        opacities[x] = pair[0] + (pair[1] - pair[0]) * across;
    }
}

}  // namespace

void drawBackdrop(QPainter& painter, const QRectF& window) {
    Paint::cached(painter, QStringLiteral("backdrop"), window, [&](QPainter& canvas) {
        const QImage shape = lightShape(window.size());
        Paint::fillFine(
            canvas, QRectF(QPointF(), window.size()), 0,
            {.color =
                 [](double part) {
                     return Paint::mixed(Theme::rgb(0.25, 0.27, 0.31), Theme::rgb(0.086, 0.098, 0.114), part);
                 },
             .light = [&shape](const QSize& size, int row,
                               std::span<float> opacities) { lightRow(shape, size, row, opacities); }});
    });
}

}  // namespace Kit
