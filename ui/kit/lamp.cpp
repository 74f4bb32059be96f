#include "ui/kit/lamp.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

namespace Kit {

void drawLamp(QPainter& painter, const QRectF& bounds, const QColor& color, bool on) {
    QRectF lamp(0, 0, lampSize, lampSize);
    lamp.moveCenter(bounds.center());
    if (on) Paint::dropShadow(painter, lamp, lampSize / 2, {Theme::faded(color, 0.8), 4, 0});
    Paint::fill(painter, lamp, lampSize / 2, on ? color : Theme::grey(0.2));
    Paint::edge(painter, lamp, lampSize / 2, Theme::black(0.4), 0.5);
}

void drawHollowLamp(QPainter& painter, const QRectF& bounds, const QColor& color) {
    QRectF lamp(0, 0, lampSize, lampSize);
    lamp.moveCenter(bounds.center());
    Paint::edge(painter, lamp, lampSize / 2, color, 1.5);
}

LampSwitch::LampSwitch(const QString& name, QWidget* parent)
    : Button(parent) {
    setUse(Use::toggle);
    setAccessibleName(name);
    setToolTip(name);
    setFixedSize(22, 22);
}

void LampSwitch::setOn(bool value) {
    if (on == value) return;
    on = value;
    stateChanged();
}

void LampSwitch::paint(QPainter& painter) {
    const QRectF body = area().adjusted(1, 1, -1, -1);
    const QString key = QStringLiteral("lamp switch %1%2").arg(int(isPressed())).arg(int(isHovered()));
    Paint::cached(painter, key, body, [&](QPainter& canvas) {
        const QRectF local(QPointF(), body.size());
        Paint::fill(canvas, local, 4,
                    isPressed() ? Theme::rgb(0.16, 0.17, 0.20) : Theme::rgb(0.20, 0.21, 0.25));
        Paint::edge(canvas, local, 4, Theme::white(isHovered() ? 0.24 : 0.12));
    });
    drawLamp(painter, Paint::snapped(painter, body), Theme::accent, on);
}

}  // namespace Kit
