#include "ui/kit/backdrop.hpp"

#include "ui/kit/finefill.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

#include <QPainterPath>

#include <algorithm>
#include <cmath>

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

// The opacities of a row of the light shape, enlarged to `size`. Between the middles of the small row's
// pixels they change evenly.
void lightRow(const QImage& shape, const QSize& size, int row, std::span<float> opacities) {
    constexpr float brightest = 0.06F;
    const float down = std::clamp((static_cast<float>(row) + 0.5F) * static_cast<float>(shape.height()) /
                                          static_cast<float>(size.height()) -
                                      0.5F,
                                  0.0F, static_cast<float>(shape.height()) - 1.001F);
    const int above = static_cast<int>(down);
    const auto rowAt = [&shape](int y) { return reinterpret_cast<const QRgb*>(shape.constScanLine(y)); };
    const QRgb* const upperRow = rowAt(above);
    const QRgb* const lowerRow = rowAt(above + 1);
    const auto small = [&](int x) {
        const auto upper = static_cast<float>(qAlpha(upperRow[x]));
        const auto lower = static_cast<float>(qAlpha(lowerRow[x]));
        return (upper + (lower - upper) * (down - static_cast<float>(above))) * brightest / 255;
    };
    const float enlargement = static_cast<float>(size.width()) / static_cast<float>(shape.width());
    const auto middleOf = [enlargement](int x) {
        return (static_cast<float>(x) + 0.5F) * enlargement - 0.5F;
    };
    int x = 0;
    for (int right = 0; right <= shape.width(); ++right) {
        const float start = small(std::max(right - 1, 0));
        const float slope = (small(std::min(right, shape.width() - 1)) - start) / enlargement;
        const float from = middleOf(right - 1);
        const int end = std::min(static_cast<int>(std::ceil(middleOf(right))), size.width());
        for (; x < end; ++x)
            opacities[static_cast<std::size_t>(x)] = start + slope * (static_cast<float>(x) - from);
    }
}

}  // namespace

// The windows share one picture: seldom is more than one of them painted.
void drawBackdrop(QPainter& painter, const QRectF& window) {
    static Paint::FinePicture picture;
    QImage shape;
    picture.draw(painter, window, 0,
                 {.color =
                      [](double part) {
                          return Paint::mixed(Theme::rgb(0.25, 0.27, 0.31), Theme::rgb(0.086, 0.098, 0.114),
                                              part);
                      },
                  .light =
                      [&](const QSize& size, int row, std::span<float> opacities) {
                          if (row == 0) shape = lightShape(window.size());
                          lightRow(shape, size, row, opacities);
                      }});
}

}  // namespace Kit
