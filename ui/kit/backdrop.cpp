#include "ui/kit/backdrop.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

#include <QPainterPath>

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

}  // namespace

void drawBackdrop(QPainter& painter, const QRectF& window) {
    Paint::cachedFine(painter, QStringLiteral("backdrop"), window, [&](QPainter& canvas) {
        const QRectF local(QPointF(), window.size());
        canvas.fillRect(
            local, Theme::vertical(local, Theme::rgb(0.25, 0.27, 0.31), Theme::rgb(0.086, 0.098, 0.114)));
        canvas.setOpacity(0.06);
        canvas.drawImage(local, lightShape(window.size()));
    });
}

}  // namespace Kit
