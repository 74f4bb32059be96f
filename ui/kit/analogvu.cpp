#include "ui/kit/analogvu.hpp"

#include "ui/kit/finefill.hpp"
#include "ui/kit/opaquepart.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/polar.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/strip.hpp"
#include "ui/kit/text.hpp"

#include <QPainterPath>
#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace Kit {

namespace {

constexpr std::array<double, 11> marks{-20, -10, -7, -5, -3, -2, -1, 0, 1, 2, 3};
constexpr std::array<double, 11> minorMarks{-15, -12, -8.5, -6, -4, -2.5, -1.5, -0.5, 0.5, 1.5, 2.5};
constexpr double fullScale = 3;       // VU
constexpr double overshoot = 1.04;    // the most that is shown, in parts of full scale
constexpr double restingAngle = -50;  // degrees
constexpr double fullAngle = 100;     // from rest to full scale
constexpr double captionHeight = 26;
constexpr double bezelWidth = 9;
constexpr double bezelRadius = 16;
constexpr double faceRadius = bezelRadius - bezelWidth;
constexpr double leastAspect = 1.7;  // of the face, so that the outermost numbers fit

// In parts of the face's height.
constexpr double pivotDepth = 1.18;
constexpr double arcRadius = 0.88;
constexpr double arcWidth = 0.016;
constexpr double majorWidth = 0.014;
constexpr double needleLength = 0.93;
constexpr double needleFoot = 0.011;  // width where it leaves the hood
constexpr double needleTip = 0.005;
constexpr double hoodRadius = 0.32;  // around the pivot

QColor brown() { return Theme::rgb(0.12, 0.08, 0.04); }
QColor red() { return Theme::rgb(0.78, 0.10, 0.06); }

QPointF pivotOf(const QRectF& face) { return {face.center().x(), face.top() + pivotDepth * face.height()}; }

void drawArc(QPainter& painter, const QRectF& face, double fromVu, double toVu, const QColor& color) {
    const double radius = arcRadius * face.height();
    const QPointF pivot = pivotOf(face);
    const QRectF round(pivot.x() - radius, pivot.y() - radius, 2 * radius, 2 * radius);
    // The arc ends with the outer edge of the mark there.
    const double half = qRadiansToDegrees(majorWidth / 2 / arcRadius);
    const double from = AnalogVU::needleAngle(fromVu) - (fromVu == marks.front() ? half : 0);
    const double to = AnalogVU::needleAngle(toVu) + (toVu == marks.back() ? half : 0);
    painter.setPen(QPen(color, arcWidth * face.height(), Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(round, static_cast<int>(std::lround((90 - from) * 16)),
                    static_cast<int>(std::lround((from - to) * 16)));
}

void drawMark(QPainter& painter, const QRectF& face, double vu, bool major) {
    const double h = face.height();
    const double angle = AnalogVU::needleAngle(vu);
    const QPointF pivot = pivotOf(face);
    const double length = major ? 0.06 : 0.035;
    painter.setPen(
        QPen(vu > 0 ? red() : brown(), (major ? majorWidth : 0.009) * h, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(onCircle(pivot, (arcRadius - arcWidth / 2) * h, angle),
                     onCircle(pivot, (arcRadius + length) * h, angle));
    if (!major) return;
    // Each number is turned to stand upright on the arc.
    painter.save();
    painter.translate(onCircle(pivot, (arcRadius + length + 0.052) * h, angle));
    painter.rotate(angle);
    const QString number = QString::asprintf(vu > 0 ? "+%.0f" : "%.0f", vu);
    Paint::text(painter, QRectF(-0.2 * h, -0.06 * h, 0.4 * h, 0.12 * h), Qt::AlignCenter, number,
                {Theme::font(0.072 * h, QFont::DemiBold), vu > 0 ? red() : brown(), {}, false});
    painter.restore();
}

// Through three colours, without the crease that straight ramps would show at the middle one. `part` is 0
// at the top of the face and 1 at its foot.
QColor backlight(double part) {
    constexpr std::array<std::array<double, 3>, 3> colors{
        {{1.0, 0.9, 0.55}, {0.97, 0.72, 0.3}, {0.62, 0.38, 0.1}}};
    constexpr double middle = 0.55;
    const bool above = part < middle;
    const double span = above ? middle : 1 - middle;
    const double t = (above ? part : part - middle) / span;
    std::array<double, 3> mixed{};
    for (std::size_t c = 0; c < mixed.size(); ++c) {
        const double from = colors[above ? 0 : 1][c];
        const double change = colors[above ? 1 : 2][c] - from;
        // The harmonic mean of both slopes: with it the curve stays between the colours.
        const double upper = (colors[1][c] - colors[0][c]) / middle;
        const double lower = (colors[2][c] - colors[1][c]) / (1 - middle);
        const double through = 2 * upper * lower / (upper + lower) * span;
        const double start = above ? change : through;
        const double end = above ? through : change;
        mixed[c] = from + start * t + (3 * change - 2 * start - end) * t * t +
                   (start + end - 2 * change) * t * t * t;
    }
    return Theme::rgb(mixed[0], mixed[1], mixed[2]);
}

void drawFace(QPainter& painter, const QRectF& face) {
    Paint::fillFine(painter, face, faceRadius, backlight);
    drawArc(painter, face, marks.front(), 0, brown());
    drawArc(painter, face, 0, marks.back(), red());
    for (const double vu : minorMarks)
        drawMark(painter, face, vu, false);
    for (const double vu : marks)
        drawMark(painter, face, vu, true);
    const double h = face.height();
    Paint::text(painter, QRectF(face.left(), face.top() + 0.48 * h, face.width(), 0.2 * h), Qt::AlignCenter,
                QStringLiteral("VU"), {Theme::font(0.15 * h, QFont::Bold), brown(), {}, false});
    Paint::innerShadow(painter, face, faceRadius, {Theme::rgb(0.24, 0.11, 0.02, 0.6), 14, 4});
}

void drawLampSeat(QPainter& painter, const QRectF& lamp) {
    const QRectF seat = lamp.adjusted(-2, -2, 2, 2);
    Paint::fill(painter, seat, seat.height() / 2, Theme::rgb(0.13, 0.075, 0.03));
    Paint::edge(painter, seat, seat.height() / 2,
                Theme::vertical(seat, Theme::black(0.6), Theme::rgb(1, 0.9, 0.6, 0.5)), 0.8);
}

// The cover from which the needle rises.
void drawHood(QPainter& painter, const QRectF& face) {
    const QPointF pivot = pivotOf(face);
    const double radius = hoodRadius * face.height();
    const QRectF hood(pivot.x() - radius, pivot.y() - radius, 2 * radius, 2 * radius);
    painter.save();
    QPainterPath window;
    window.addRoundedRect(face, faceRadius, faceRadius);
    painter.setClipPath(window);
    Paint::dropShadow(painter, hood, radius, {Theme::rgb(0.2, 0.09, 0.01, 0.6), 8, -1});
    QLinearGradient body(hood.topLeft(), QPointF(hood.left(), face.bottom()));
    body.setColorAt(0, Theme::rgb(0.2, 0.17, 0.15));
    body.setColorAt(1, Theme::rgb(0.07, 0.06, 0.06));
    Paint::fill(painter, hood, radius, body);
    Paint::edge(painter, hood, radius, Theme::rgb(1, 0.9, 0.7, 0.28));
    painter.restore();
}

// One slanted reflection of a window, which fades towards the foot.
void drawGlass(QPainter& painter, const QRectF& face) {
    const double h = face.height();
    const double left = face.left() + 0.08 * face.width();
    QLinearGradient band(QPointF(left, face.top()), QPointF(left + 0.75 * h, face.top() + 0.32 * h));
    band.setColorAt(0, Theme::white(0));
    band.setColorAt(0.03, Theme::white(0.22));
    band.setColorAt(0.55, Theme::white(0.09));
    band.setColorAt(0.58, Theme::white(0.16));
    band.setColorAt(0.72, Theme::white(0.05));
    band.setColorAt(0.75, Theme::white(0));
    Paint::fill(painter, face, faceRadius, band);
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(face, Theme::vertical(face, Theme::black(1), Theme::black(0.12)));
    painter.restore();
    drawHood(painter, face);
    Paint::edge(painter, face, faceRadius, Theme::black(0.5));
}

}  // namespace

AnalogVU::AnalogVU(const QString& label, float reference, QWidget* parent)
    : Control(parent)
    , label(label)
    , reference(reference)
    , level(-std::numeric_limits<float>::infinity())
    , needle(Animation::Kind::spring, restingAngle, *this,
             [this] {
                 needleArea->update(
                     sweptBetween(drawnAngle, needle.position()).translated(-needleArea->pos()));
                 drawnAngle = needle.position();
             })
    , drawnAngle(restingAngle)
    , needleArea(
          new OpaquePart(*this, [this](QPainter& painter, const QRegion&) { paintNeedleArea(painter); })) {
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(label);
    setMinimumSize(200, 130);
}

// All of the face is in proportion to its size.
void AnalogVU::setGrowth(double factor) {
    captionGrowth = factor;
    update();
}

double AnalogVU::needleAngle(double vu) {
    if (!std::isfinite(vu)) return restingAngle;
    const double part = std::pow(10, vu / 20) / std::pow(10, fullScale / 20);
    return std::min(part, overshoot) * fullAngle + restingAngle;
}

double AnalogVU::vu() const {
    return std::isfinite(level) ? level - reference : -std::numeric_limits<double>::infinity();
}

QString AnalogVU::valueText() const { return QString::asprintf("%.0f VU", vu()); }

void AnalogVU::setLevel(float value) {
    const bool peaked = vu() > fullScale;
    level = value;
    if (peaked != (vu() > fullScale)) {
        const QRect lamp = lampLight().toAlignedRect();
        update(lamp);
        needleArea->update(lamp.translated(-needleArea->pos()));
    }
    needle.moveTo(needleAngle(vu()));
}

QRectF AnalogVU::bezel() const {
    const QRectF room = QRectF(rect()).adjusted(0, 0, 0, -captionHeight * captionGrowth);
    const double tallest = (room.width() - 2 * bezelWidth) / leastAspect + 2 * bezelWidth;
    const double spare = std::max(0.0, std::floor((room.height() - tallest) / 2));
    return room.adjusted(0, spare, 0, -spare);
}

QRectF AnalogVU::face() const { return bezel().adjusted(bezelWidth, bezelWidth, -bezelWidth, -bezelWidth); }

QRectF AnalogVU::peakLamp() const { return {face().right() - 18, face().top() + 11, 7, 7}; }

QRectF AnalogVU::lampLight() const { return peakLamp().adjusted(-9, -9, 9, 9); }

// The area that the needle and its shadow cover at the angles `from` and `to`. It is made of flat
// rectangles, one above the other: a single rectangle around a slanted line would be mostly empty.
QRegion AnalogVU::sweptBetween(double from, double to) const {
    const QRectF area = face();
    constexpr double bandHeight = 32;
    const int bands = static_cast<int>(std::ceil(area.height() / bandHeight));
    const QPointF pivot = pivotOf(area);
    const auto line = [&](int number) { return std::round(area.top() + area.height() * number / bands); };
    QRegion swept;
    for (int i = 0; i < bands; ++i) {
        QRectF covered;
        for (const double angle : {from, to}) {
            const double tip = onCircle(pivot, needleLength * area.height(), angle).y() - 3;
            const double top = std::max(line(i), std::floor(tip));
            const double bottom = line(i + 1);
            if (top >= bottom) continue;
            const double slope = std::tan(qDegreesToRadians(angle));
            covered |= QRectF(QPointF(pivot.x() + slope * (pivot.y() - top), top),
                              QPointF(pivot.x() + slope * (pivot.y() - bottom), bottom))
                           .normalized();
        }
        if (!covered.isNull()) swept += covered.adjusted(-4, 0, 9, 0).toAlignedRect();
    }
    return swept;
}

void AnalogVU::resizeEvent(QResizeEvent*) {
    constexpr int roundCorner = 3;  // the rounded corners of the face are transparent
    needleArea->setGeometry(
        face().toAlignedRect().adjusted(roundCorner, roundCorner, -roundCorner, -roundCorner));
}

QPixmap AnalogVU::glass(const QPainter& painter) const {
    return Paint::cachedPicture(painter, QStringLiteral("vu glass"), bezel(), [&](QPainter& canvas) {
        canvas.translate(-bezel().topLeft());
        drawGlass(canvas, Paint::snapped(canvas, face()));
    });
}

// Without the needle.
QPixmap AnalogVU::instrument(const QPainter& painter) const {
    return Paint::cachedPicture(painter, QStringLiteral("vu"), bezel(), [&](QPainter& canvas) {
        canvas.translate(-bezel().topLeft());
        Paint::fill(canvas, bezel(), bezelRadius,
                    Theme::vertical(bezel(), Theme::rgb(0.2, 0.21, 0.25), Theme::rgb(0.08, 0.085, 0.1)));
        Paint::edge(canvas, bezel(), bezelRadius, Theme::rim(bezel()));
        drawFace(canvas, Paint::snapped(canvas, face()));
        drawLampSeat(canvas, peakLamp());
        canvas.resetTransform();
        canvas.drawPixmap(0, 0, glass(painter));
    });
}

void AnalogVU::paint(QPainter& painter) {
    const QRect place = Paint::pixelsOf(painter, bezel());
    if (place.isEmpty()) return;
    Paint::drawStretched(painter, place, instrument(painter), {});
    drawLamp(painter);
    const QRectF caption(0, bezel().bottom() + 6, width(), captionHeight * captionGrowth - 6);
    Paint::cached(painter, label, caption, [&](QPainter& canvas) {
        Paint::text(canvas, QRectF(QPointF(), caption.size()), Qt::AlignCenter, label,
                    {Theme::font(11 * captionGrowth, QFont::Normal, 2 * captionGrowth),
                     Theme::secondary,
                     {},
                     false,
                     true});
    });
}

void AnalogVU::drawLamp(QPainter& painter) const {
    if (Paint::isClippedAway(painter, lampLight())) return;
    const bool peak = vu() > fullScale;
    if (peak) Paint::dropShadow(painter, peakLamp(), 3.5, {red(), 8, 0});
    Paint::fill(painter, peakLamp(), 3.5, peak ? Theme::rgb(1, 0.16, 0.1) : Theme::rgb(0.35, 0.12, 0.08));
}

void AnalogVU::paintNeedleArea(QPainter& painter) const {
    const QRect place = Paint::pixelsOf(painter, bezel());
    if (place.isEmpty()) return;
    const QImage face = instrument(painter).toImage();
    const QImage pane = glass(painter).toImage();
    const std::vector<Paint::Strip> strips = needleStrips(painter);
    const QRect area = Paint::pixelsOf(painter, needleArea->geometry()) & place;
    for (const QRect& part : Paint::exposedBy(painter) & area)
        Paint::writePixels(painter, part, [&](QPoint from, const QRect& to, QImage& image) {
            Paint::copyPixels(face, from - place.topLeft(), to, image);
            for (const Paint::Strip& strip : strips)
                Paint::blendStrip(strip, from, to, image, pane, place.topLeft());
        });
    drawLamp(painter);
}

// The shadow's and the needle's, from foot to tip.
std::vector<Paint::Strip> AnalogVU::needleStrips(const QPainter& painter) const {
    constexpr int pieces = 6;
    const QRectF area = face();
    const QPointF pivot = pivotOf(area);
    const double h = area.height();
    const double angle = needle.position();
    const QPointF tip = onCircle(pivot, needleLength * h, angle);
    const QPointF foot(pivot.x() +
                           (area.bottom() - pivot.y()) / (tip.y() - pivot.y()) * (tip.x() - pivot.x()),
                       area.bottom());
    const double slant = std::cos(qDegreesToRadians(angle));  // a level cut is wider by its inverse
    std::vector<Paint::Strip> strips;
    const auto add = [&](double broader, QPointF offset, const QColor& color) {
        const auto cut = [&](int at) {
            const double part = static_cast<double>(at) / pieces;
            const double half = (needleFoot + (needleTip - needleFoot) * part) * broader * h / slant / 2;
            const QPointF middle = foot + (tip - foot) * part + offset;
            const QTransform device = painter.deviceTransform();
            const QPointF left = device.map(middle - QPointF(half, 0));
            return Paint::Strip::End{static_cast<int>(std::round(left.y())), left.x(),
                                     device.map(middle + QPointF(half, 0)).x()};
        };
        for (int i = 0; i < pieces; ++i)
            strips.push_back({cut(i + 1), cut(i), color.rgb(), static_cast<float>(color.alphaF())});
    };
    add(1.6, QPointF(0.014, 0.016) * h, Theme::rgb(0.2, 0.09, 0.01, 0.3));
    add(1, {}, brown());
    return strips;
}

}  // namespace Kit
