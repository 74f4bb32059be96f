#include "ui/kit/spinner.hpp"

#include "ui/kit/theme.hpp"

#include <QPainter>

namespace Kit {

namespace {

constexpr int spokes = 8;

}  // namespace

Spinner::Spinner(QWidget* parent)
    : QWidget(parent) {
    setFixedSize(16, 16);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void Spinner::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(QRectF(rect()).center());
    painter.rotate(turn * 360.0 / spokes);
    for (int i = 0; i < spokes; ++i) {
        painter.setPen(
            QPen(Theme::faded(Theme::text, 0.15 + 0.75 * i / spokes), 1.8, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(QPointF(0, -3.4), QPointF(0, -6.4));
        painter.rotate(360.0 / spokes);
    }
}

void Spinner::timerEvent(QTimerEvent*) {
    turn = (turn + 1) % spokes;
    update();
}

void Spinner::showEvent(QShowEvent*) { timer = startTimer(100); }

void Spinner::hideEvent(QHideEvent*) { killTimer(timer); }

}  // namespace Kit
