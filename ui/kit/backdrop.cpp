#include "ui/kit/backdrop.hpp"

#include "ui/kit/finefill.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

#include <QPainterPath>

#include <algorithm>
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

// Where a pixel of an enlarged row lies in the small one: between two of its pixels.
struct Between {
    Between(int pixel, int count, int smallCount)
        : Between(std::clamp((static_cast<float>(pixel) + 0.5F) * static_cast<float>(smallCount) /
                                     static_cast<float>(count) -
                                 0.5F,
                             0.0F, static_cast<float>(smallCount) - 1.001F)) {}

    int first;
    float part;  // of the way to the second

private:
    explicit Between(float place)
        : first(static_cast<int>(place))
        , part(place - static_cast<float>(first)) {}
};

// The opacities of a row of the light shape, enlarged to `size`.
void lightRow(const QImage& shape, const QSize& size, int row, std::span<float> opacities) {
    constexpr float brightest = 0.06F;
    const Between down(row, size.height(), shape.height());
    std::vector<float> small(static_cast<std::size_t>(shape.width()));
    for (int x = 0; x < shape.width(); ++x) {
        const auto upper = static_cast<float>(qAlpha(shape.pixel(x, down.first)));
        const auto lower = static_cast<float>(qAlpha(shape.pixel(x, down.first + 1)));
        small[static_cast<std::size_t>(x)] = (upper + (lower - upper) * down.part) * brightest / 255;
    }
    for (int x = 0; x < size.width(); ++x) {
        const Between across(x, size.width(), shape.width());
        const float* const pair = &small[static_cast<std::size_t>(across.first)];
        opacities[static_cast<std::size_t>(x)] = pair[0] + (pair[1] - pair[0]) * across.part;
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
