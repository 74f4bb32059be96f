#include "ui/kit/knob.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/polar.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QPainterPath>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kit {

namespace {

constexpr double sweep = 270;  // degrees, centred on straight up
constexpr double dragForRange = 220;
constexpr int ticks = 40;

// Degrees clockwise from straight up.
double angleAt(double fraction) { return fraction * sweep - sweep / 2; }

QRectF circle(QPointF centre, double diameter) {
    return {centre.x() - diameter / 2, centre.y() - diameter / 2, diameter, diameter};
}

double readOutSize(double size) { return size * 0.1; }
double captionSize(double size) { return std::max(size * 0.085, 11.0); }
double readOutHeight(double size) { return std::round(readOutSize(size) * 1.5) + 2; }
double captionHeight(double size) { return std::round(captionSize(size) * 1.6); }

}  // namespace

Knob::Knob(QString title, Range range, double defaultValue, double step, Format format, Look look,
           QWidget* parent)
    : ValueControl(range, defaultValue, step, std::move(format), parent)
    , title(std::move(title))
    , look(std::move(look)) {
    setAccessibleName(this->title);
    setFixedSize(Knob::sizeHint());
}

void Knob::setTitle(const QString& text) {
    if (title == text) return;
    title = text;
    update();
}

QSize Knob::sizeHint() const {
    const double height = look.size + readOutHeight(look.size) + captionHeight(look.size);
    const double caption =
        Paint::textWidth(title.toUpper(), {Theme::font(captionSize(look.size), QFont::DemiBold, 2), {}, {}});
    return {static_cast<int>(std::ceil(std::max(look.size, caption))) + 4,
            static_cast<int>(std::ceil(height)) + 4};
}

QRectF Knob::dial() const { return {(width() - look.size) / 2, 2, look.size, look.size}; }

Control::Outline Knob::outline() const { return {QRectF(rect()).adjusted(1, 1, -1, -1), 12}; }

double Knob::dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const {
    return start + factorFor(modifiers) * (translation.y() / -dragForRange * range.extent());
}

// The read-out of a small knob is small; the tag repeats it in a size that everyone can read. It stays
// for a while after the last key or notch.
void Knob::showTag() {
    constexpr double aboveDial = 11;
    tag.show(valueText(), dial().center() - QPointF(0, dial().height() / 2 - aboveDial));
}

void Knob::updateTag() {
    if (isHovered() || isDragging() || lingering.isActive())
        showTag();
    else
        tag.hide();
}

void Knob::linger() {
    constexpr int milliseconds = 1200;
    lingering.start(milliseconds, this);
    updateTag();
}

void Knob::timerEvent(QTimerEvent* event) {
    if (event->timerId() != lingering.timerId()) return ValueControl::timerEvent(event);
    lingering.stop();
    updateTag();
}

bool Knob::event(QEvent* event) {
    const bool handled = ValueControl::event(event);
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::Wheel:
        if (event->isAccepted()) linger();
        break;
    case QEvent::Hide:
    case QEvent::FocusOut:
        lingering.stop();
        updateTag();
        break;
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::EnabledChange:
        updateTag();
        break;
    default:
        break;
    }
    return handled;
}

void Knob::paint(QPainter& painter) {
    const bool bright = isHovered() || isDragging();
    painter.save();
    Paint::fit(painter, dial());
    Paint::cached(painter, QStringLiteral("knob %1 %2 %3").arg(look.minLabel, look.maxLabel).arg(int(bright)),
                  dial(), [&](QPainter& canvas) {
                      canvas.translate(-dial().topLeft());
                      drawDial(canvas);
                  });
    drawArc(painter);
    drawPointer(painter);
    painter.restore();
    drawTexts(painter);
}

void Knob::drawDial(QPainter& painter) const {
    const QPointF centre = dial().center();
    const double half = look.size / 2;
    for (int i = 0; i <= ticks; ++i) {
        const bool major = i % 5 == 0;
        const double angle = angleAt(static_cast<double>(i) / ticks);
        const double outer = 0.86 * half;
        const double length = (major ? 0.075 : 0.04) * look.size;
        painter.setPen(QPen(Theme::faded(Theme::tick, major ? 0.75 : 0.4), major ? 1.6 : 1.1, Qt::SolidLine,
                            Qt::RoundCap));
        painter.drawLine(onCircle(centre, outer - length, angle), onCircle(centre, outer, angle));
    }
    drawEndLabel(painter, look.minLabel, -sweep / 2 - 14);
    drawEndLabel(painter, look.maxLabel, sweep / 2 + 14);
    drawCap(painter);
}

void Knob::drawEndLabel(QPainter& painter, const QString& text, double angle) const {
    QRectF place(0, 0, look.size, look.size * 0.11);
    place.moveCenter(onCircle(dial().center(), 0.95 * look.size / 2, angle));
    Paint::text(painter, place, Qt::AlignCenter, text,
                {Theme::font(0.085 * look.size), Theme::secondary, {}, false});
}

void Knob::drawArc(QPainter& painter) const {
    const double start = look.bipolar ? 0.5 : 0;
    const double from = std::min(start, fraction());
    const double to = std::max(start, fraction());
    if (to - from < 1e-6) return;
    QPainterPath arc;
    const QRectF round = circle(dial().center(), 0.74 * look.size);
    arc.arcMoveTo(round, 90 - angleAt(from));
    arc.arcTo(round, 90 - angleAt(from), -sweep * (to - from));
    const QPen pen(Theme::accent, 0.022 * look.size, Qt::SolidLine, Qt::RoundCap);
    Paint::glowingStroke(painter, arc, pen, Theme::faded(Theme::accent, 0.6), 0.035 * look.size);
}

void Knob::drawCap(QPainter& painter) const {
    const QPointF centre = dial().center();
    const bool bright = isHovered() || isDragging();
    const QRectF ring = circle(centre, 0.70 * look.size);
    Paint::fill(painter, ring, ring.height() / 2, Theme::well);
    Paint::innerShadow(painter, ring, ring.height() / 2, {Theme::black(0.7), 4, 3});
    Paint::edge(painter, ring, ring.height() / 2, Theme::recessRim(ring), 0.8);

    const QRectF cap = circle(centre, 0.62 * look.size);
    const double radius = cap.height() / 2;
    Paint::dropShadow(painter, cap, radius, {Theme::black(0.6), 0.09 * look.size, 0.045 * look.size});
    Paint::fill(painter, cap, radius,
                Theme::vertical(cap, Theme::rgb(0.255, 0.27, 0.315), Theme::rgb(0.15, 0.16, 0.19)));
    Paint::innerShadow(painter, cap, radius,
                       {Theme::white(bright ? 0.32 : 0.2), 0.03 * look.size, 0.014 * look.size});
    Paint::innerShadow(painter, cap, radius, {Theme::black(0.4), 0.07 * look.size, -0.035 * look.size});
    Paint::edge(painter, cap, radius,
                Theme::vertical(cap, Theme::white(bright ? 0.4 : 0.25), Theme::black(0.3)));
}

void Knob::drawPointer(QPainter& painter) const {
    const QPointF centre = dial().center();
    const double angle = angleAt(fraction());
    const double radius = 0.31 * look.size;
    painter.setPen(QPen(Theme::grey(0.93), 0.024 * look.size, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(onCircle(centre, 0.42 * radius, angle), onCircle(centre, 0.86 * radius, angle));
}

void Knob::drawTexts(QPainter& painter) const {
    QRectF line(0, dial().bottom() + 2, width(), readOutHeight(look.size) - 2);
    Paint::text(painter, line, Qt::AlignCenter, valueText(),
                {Theme::font(readOutSize(look.size), QFont::Medium), Theme::text, {}, true});
    line = {0, line.bottom(), double(width()), captionHeight(look.size)};
    Paint::text(painter, line, Qt::AlignCenter, title.toUpper(),
                {Theme::font(captionSize(look.size), QFont::DemiBold, 2), Theme::secondary, {}, false});
}

}  // namespace Kit
