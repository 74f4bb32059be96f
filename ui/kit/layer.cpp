#include "ui/kit/layer.hpp"

#include <QImage>
#include <QPaintEngine>
#include <QTransform>

#include <utility>

namespace Paint {

void layered(QPainter& painter, const QRectF& bounds, const Drawing& draw) {
    const QTransform device = painter.deviceTransform();
    QRect place = device.mapRect(bounds).toAlignedRect();
    if (const QRegion repainted = painter.paintEngine()->systemClip(); !repainted.isEmpty())
        place = (repainted & place).boundingRect();
    if (place.isEmpty()) return;
    QImage image(place.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter canvas(&image);
        canvas.setRenderHint(QPainter::Antialiasing);
        canvas.setCompositionMode(QPainter::CompositionMode_Source);
        canvas.setTransform(device * QTransform::fromTranslate(-place.x(), -place.y()));
        draw(canvas);
    }
    drawStretched(painter, place, QPixmap::fromImage(std::move(image)), {});
}

}  // namespace Paint
