#include "ui/kit/knob.hpp"

#include "ui/kit/layer.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/polar.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QConicalGradient>
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

// In parts of the dial's size.
constexpr double arcDiameter = 0.74;
constexpr double arcWidth = 0.022;
constexpr double capDiameter = 0.62;
constexpr double topDiameter = 0.56;  // of the cap, within its chamfer
constexpr double arcGlow = 0.035;
constexpr double slotWidth = 0.04;  // of the pointer

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

QRectF Knob::readOut() const {
    return {0, dial().bottom() + 2, area().width(), readOutHeight(look.size) - 2};
}

QRectF Knob::dial() const { return {(area().width() - look.size) / 2, 2, look.size, look.size}; }

// The ring lies in the recess around the cap.
Control::Outline Knob::outline() const {
    const QRectF cap = circle(dial().center(), capDiameter * look.size);
    return {cap, cap.height() / 2};
}

QRect Knob::editorPlace() const {
    constexpr int editorHeight = 22;
    QRect place(0, 0, static_cast<int>(area().width()), editorHeight);
    place.moveCenter(readOut().center().toPoint());
    return place;
}

double Knob::dragged(double start, QPointF translation, Qt::KeyboardModifiers modifiers) const {
    return start + factorFor(modifiers) * (translation.y() / -dragForRange * range.extent());
}

// The read-out of a small knob is small; the tag repeats it in a size that everyone can read. It stays
// for a while after the last key or notch.
void Knob::showTag() {
    constexpr double aboveDial = 11;
    tag.show(valueText(), grown(dial().center() - QPointF(0, dial().height() / 2 - aboveDial)));
}

void Knob::updateTag() {
    if ((isHovered() || isDragging() || lingering.isActive()) && !isEditing())
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

// A drag repaints only the part of the arc that has come or gone, the pointer and the number.
QRegion Knob::changedSince(double before) const {
    constexpr double piece = 1.0 / 24;  // of the sweep: its arc is nearly straight
    const auto around = [this](QPointF a, QPointF b, double reach) {
        const QRectF place = QRectF(a, b).normalized().adjusted(-reach, -reach, reach, reach);
        return grown(place).toAlignedRect();
    };
    const QRectF number = readOut();
    QRegion changed = around(number.topLeft(), number.bottomRight(), 1);
    const auto [from, to] = std::minmax({fractionOf(before), fraction()});
    const auto onArc = [this](double fraction) {
        return onCircle(dial().center(), arcDiameter / 2 * look.size, angleAt(fraction));
    };
    const double reach = (arcWidth / 2 + arcGlow) * look.size + 2;
    const int pieces = static_cast<int>(std::ceil((to - from) / piece));
    for (int i = 0; i < pieces; ++i)
        changed += around(onArc(from + i * piece), onArc(std::min(from + (i + 1) * piece, to)), reach);
    for (const double fraction : {from, to}) {
        const QLineF line = pointerAt(fraction);
        changed += around(line.p1(), line.p2(), slotWidth / 2 * look.size + 2);
    }
    return changed;
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
    drawGroove(painter);
    drawTicks(painter);
    drawEndLabel(painter, look.minLabel, -sweep / 2 - 14);
    drawEndLabel(painter, look.maxLabel, sweep / 2 + 14);
    drawCap(painter);
}

// Where the value arc is not lit.
void Knob::drawGroove(QPainter& painter) const {
    const QPainterPath whole = arcBetween(0, 1);
    const double width = (arcWidth + 0.012) * look.size;
    painter.setBrush(Qt::NoBrush);
    painter.strokePath(whole.translated(0, 0.006 * look.size),
                       QPen(Theme::white(0.07), width, Qt::SolidLine, Qt::RoundCap));
    painter.strokePath(whole, QPen(Theme::well, width, Qt::SolidLine, Qt::RoundCap));
    painter.strokePath(whole, QPen(Theme::black(0.25), arcWidth * look.size, Qt::SolidLine, Qt::RoundCap));
}

void Knob::drawTicks(QPainter& painter) const {
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
}

void Knob::drawEndLabel(QPainter& painter, const QString& text, double angle) const {
    QRectF place(0, 0, look.size, look.size * 0.11);
    place.moveCenter(onCircle(dial().center(), 0.95 * look.size / 2, angle));
    Paint::text(painter, place, Qt::AlignCenter, text,
                {Theme::font(0.085 * look.size), Theme::secondary, {}, false, true});
}

QPainterPath Knob::arcBetween(double from, double to) const {
    QPainterPath arc;
    const QRectF round = circle(dial().center(), arcDiameter * look.size);
    arc.arcMoveTo(round, 90 - angleAt(from));
    arc.arcTo(round, 90 - angleAt(from), -sweep * (to - from));
    return arc;
}

void Knob::drawArc(QPainter& painter) const {
    const double start = look.bipolar ? 0.5 : 0;
    const double from = std::min(start, fraction());
    const double to = std::max(start, fraction());
    if (to - from < 1e-6) return;
    const QPen pen(Theme::accent, arcWidth * look.size, Qt::SolidLine, Qt::RoundCap);
    Paint::glowingStroke(painter, arcBetween(from, to), pen, Theme::faded(Theme::accent, 0.6),
                         arcGlow * look.size);
}

void Knob::drawCap(QPainter& painter) const {
    const QPointF centre = dial().center();
    const bool bright = isHovered() || isDragging();
    const QRectF ring = circle(centre, 0.70 * look.size);
    Paint::fill(painter, ring, ring.height() / 2, Theme::well);
    Paint::innerShadow(painter, ring, ring.height() / 2, {Theme::black(0.7), 4, 3});
    Paint::edge(painter, ring, ring.height() / 2, Theme::recessRim(ring), 0.8);

    const QRectF cap = circle(centre, capDiameter * look.size);
    const double radius = cap.height() / 2;
    Paint::dropShadow(painter, cap, radius, {Theme::black(0.6), 0.09 * look.size, 0.045 * look.size});
    Paint::fill(painter, cap, radius,
                Theme::vertical(cap, Theme::rgb(0.255, 0.27, 0.315), Theme::rgb(0.15, 0.16, 0.19)));
    drawSheen(painter, cap);
    if (bright) Paint::fill(painter, cap, radius, Theme::white(0.07));
    drawChamfer(painter);
    Paint::innerShadow(painter, cap, radius,
                       {Theme::white(bright ? 0.4 : 0.2), 0.03 * look.size, 0.014 * look.size});
    Paint::innerShadow(painter, cap, radius, {Theme::black(0.4), 0.07 * look.size, -0.035 * look.size});
    Paint::edge(painter, cap, radius,
                Theme::vertical(cap, Theme::white(bright ? 0.6 : 0.3), Theme::black(0.35)));
}

// The reflection of the light on turned metal. It stays in place while the knob turns.
void Knob::drawSheen(QPainter& painter, const QRectF& cap) const {
    constexpr double light = 115;  // degrees, counted from the right against the clock
    QConicalGradient sheen(cap.center(), light);
    for (const double turn : {0.0, 0.5, 1.0})
        sheen.setColorAt(turn, Theme::white(0.075));
    for (const double turn : {0.13, 0.37, 0.63, 0.87})
        sheen.setColorAt(turn, Theme::white(0));
    for (const double turn : {0.25, 0.75})
        sheen.setColorAt(turn, Theme::black(0.07));
    Paint::fill(painter, cap, cap.height() / 2, sheen);
}

// The slanted ring around the top of the cap: lit above, dark below.
void Knob::drawChamfer(QPainter& painter) const {
    const double width = (capDiameter - topDiameter) / 2 * look.size;
    const QRectF cap = circle(dial().center(), capDiameter * look.size);
    QLinearGradient slant(cap.topLeft(), cap.bottomLeft());
    slant.setColorAt(0, Theme::white(0.17));
    slant.setColorAt(0.4, Theme::white(0.02));
    slant.setColorAt(0.6, Theme::black(0.08));
    slant.setColorAt(1, Theme::black(0.38));
    Paint::edge(painter, cap, cap.height() / 2, slant, width);
    const QRectF top = circle(dial().center(), topDiameter * look.size);
    Paint::edge(painter, top, top.height() / 2, Theme::vertical(top, Theme::black(0.22), Theme::white(0.1)),
                0.8);
}

QLineF Knob::pointerAt(double fraction) const {
    const QPointF centre = dial().center();
    const double angle = angleAt(fraction);
    const double radius = capDiameter / 2 * look.size;
    return {onCircle(centre, 0.42 * radius, angle), onCircle(centre, 0.86 * radius, angle)};
}

// A white line in a slot.
void Knob::drawPointer(QPainter& painter) const {
    const QLineF line = pointerAt(fraction());
    const double margin = slotWidth / 2 * look.size + 1;
    const auto draw = [&](const QColor& color, double width, double down) {
        const QLineF place = line.translated(0, down * look.size);
        const QRectF bounds = QRectF(place.p1(), place.p2()).normalized();
        Paint::layered(painter, bounds.adjusted(-margin, -margin, margin, margin), [&](QPainter& canvas) {
            canvas.setPen(QPen(color, width * look.size, Qt::SolidLine, Qt::RoundCap));
            canvas.drawLine(place);
        });
    };
    draw(Theme::white(0.12), slotWidth, 0.005);
    draw(Theme::black(0.6), slotWidth, 0);
    draw(Theme::grey(0.93), 0.024, 0);
}

void Knob::drawTexts(QPainter& painter) const {
    const QRectF number = readOut();
    if (!isEditing())
        Paint::text(painter, number, Qt::AlignCenter, valueText(),
                    {Theme::font(readOutSize(look.size), QFont::Medium), Theme::text, {}, true});
    const QRectF caption(0, number.bottom(), area().width(), captionHeight(look.size));
    Paint::text(painter, caption, Qt::AlignCenter, title.toUpper(),
                {Theme::font(captionSize(look.size), QFont::DemiBold, 2), Theme::secondary, {}, false, true});
}

}  // namespace Kit
