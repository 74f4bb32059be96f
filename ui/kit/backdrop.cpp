#include "ui/kit/backdrop.hpp"

#include "ui/kit/painting.hpp"

#include <QPainterPath>

namespace Kit {

namespace {

constexpr double softness = 150;

// Blurred far more than any shadow: drawn small and enlarged, it is as soft and costs little.
QImage lightShape(const QSizeF& size) {
    constexpr double reduction = 16;
    QImage image((size / reduction).toSize().expandedTo(QSize(8, 8)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF small(QPointF(), image.size());
    const double w = small.width();
    const double h = small.height();
    Paint::softCopy(painter, QStringLiteral("light"), small, {Theme::white(1), softness / reduction, 0},
                    [&](QPainter& ink) {
                        QPainterPath path(QPointF(0.38 * w, -h));
                        path.lineTo(0.62 * w, -h);
                        path.lineTo(0.62 * w, 0);
                        path.quadTo(QPointF(0.5 * w, 0.42 * h), QPointF(0.38 * w, 0));
                        ink.fillPath(path, Theme::white(1));
                    });
    return image;
}

}  // namespace

void drawBackdrop(QPainter& painter, const QRectF& window) {
    Paint::cached(painter, QStringLiteral("backdrop"), window, [&](QPainter& ink) {
        const QRectF local(QPointF(), window.size());
        ink.fillRect(local,
                     Theme::vertical(local, Theme::rgb(0.25, 0.27, 0.31), Theme::rgb(0.086, 0.098, 0.114)));
        ink.setOpacity(0.06);
        ink.drawImage(local, lightShape(window.size()));
    });
}

}  // namespace Kit
