#include "ui/kit/analogvu.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/polar.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

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
constexpr double leastAspect = 1.7;  // of the face, so that the outermost numbers fit

// In parts of the face's height.
constexpr double pivotDepth = 1.18;
constexpr double arcRadius = 0.88;
constexpr double needleLength = 0.93;

QColor brown() { return Theme::rgb(0.12, 0.08, 0.04); }
QColor red() { return Theme::rgb(0.78, 0.10, 0.06); }

QPointF pivotOf(const QRectF& face) { return {face.center().x(), face.top() + pivotDepth * face.height()}; }

void drawArc(QPainter& painter, const QRectF& face, double fromVu, double toVu, const QColor& color) {
    const double radius = arcRadius * face.height();
    const QPointF pivot = pivotOf(face);
    const QRectF round(pivot.x() - radius, pivot.y() - radius, 2 * radius, 2 * radius);
    const double from = AnalogVU::needleAngle(fromVu);
    const double to = AnalogVU::needleAngle(toVu);
    painter.setPen(QPen(color, 0.016 * face.height(), Qt::SolidLine, Qt::FlatCap));
    painter.drawArc(round, static_cast<int>(std::lround((90 - from) * 16)),
                    static_cast<int>(std::lround((from - to) * 16)));
}

void drawMark(QPainter& painter, const QRectF& face, double vu, bool major) {
    const double h = face.height();
    const double angle = AnalogVU::needleAngle(vu);
    const QPointF pivot = pivotOf(face);
    const double length = major ? 0.06 : 0.035;
    painter.setPen(QPen(vu > 0 ? red() : brown(), (major ? 0.014 : 0.009) * h, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(onCircle(pivot, arcRadius * h, angle), onCircle(pivot, (arcRadius + length) * h, angle));
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

void drawFace(QPainter& painter, const QRectF& face) {
    QLinearGradient backlight(face.topLeft(), face.bottomLeft());
    backlight.setColorAt(0, Theme::rgb(1.0, 0.9, 0.55));
    backlight.setColorAt(0.55, Theme::rgb(0.97, 0.72, 0.3));
    backlight.setColorAt(1, Theme::rgb(0.62, 0.38, 0.1));
    Paint::fill(painter, face, 9, backlight);
    drawArc(painter, face, marks.front(), 0, brown());
    drawArc(painter, face, 0, marks.back(), red());
    for (const double vu : minorMarks)
        drawMark(painter, face, vu, false);
    for (const double vu : marks)
        drawMark(painter, face, vu, true);
    const double h = face.height();
    Paint::text(painter, QRectF(face.left(), face.top() + 0.48 * h, face.width(), 0.2 * h), Qt::AlignCenter,
                QStringLiteral("VU"), {Theme::font(0.15 * h, QFont::Bold), brown(), {}, false});
    Paint::innerShadow(painter, face, 9, {Theme::black(0.45), 12, 5});
}

void drawGlass(QPainter& painter, const QRectF& face) {
    QLinearGradient shine(face.topLeft(), QPointF(face.left(), face.top() + 0.5 * face.height()));
    shine.setColorAt(0, Theme::white(0.22));
    shine.setColorAt(1, Theme::white(0));
    Paint::fill(painter, face, 9, shine);
    Paint::edge(painter, face, 9, Theme::black(0.5));
}

}  // namespace

// The part of the face in which the needle moves, as an opaque widget of its own. When the needle moves
// the toolkit repaints this widget alone; without it, the panel and the window behind the meter too.
class AnalogVU::NeedleArea final : public QWidget {
public:
    explicit NeedleArea(AnalogVU& meter)
        : QWidget(&meter)
        , meter(meter) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.translate(-pos());
        meter.paint(painter);
    }

private:
    AnalogVU& meter;
};

AnalogVU::AnalogVU(const QString& label, float reference, QWidget* parent)
    : Control(parent)
    , label(label)
    , reference(reference)
    , level(-std::numeric_limits<float>::infinity())
    , needle(Animation::Kind::spring, restingAngle, *this,
             [this] {
                 redraw(sweptBetween(drawnAngle, needle.position()));
                 drawnAngle = needle.position();
             })
    , drawnAngle(restingAngle)
    , needleArea(new NeedleArea(*this)) {
    setFocusPolicy(Qt::NoFocus);
    setAccessibleName(label);
    setMinimumSize(200, 130);
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

std::optional<MeterLevel> AnalogVU::meteredLevel() const {
    return MeterLevel{std::isfinite(vu()) ? std::clamp(vu(), marks.front(), marks.back()) : marks.front(),
                      marks.front(), marks.back()};
}

void AnalogVU::setLevel(float value) {
    const bool peaked = vu() > fullScale;
    level = value;
    if (peaked != (vu() > fullScale)) redraw(peakLamp().adjusted(-9, -9, 9, 9).toAlignedRect());
    needle.moveTo(needleAngle(vu()));
}

QRectF AnalogVU::bezel() const {
    const QRectF room = QRectF(rect()).adjusted(0, 0, 0, -captionHeight);
    const double tallest = (room.width() - 2 * bezelWidth) / leastAspect + 2 * bezelWidth;
    const double spare = std::max(0.0, std::floor((room.height() - tallest) / 2));
    return room.adjusted(0, spare, 0, -spare);
}

QRectF AnalogVU::face() const { return bezel().adjusted(bezelWidth, bezelWidth, -bezelWidth, -bezelWidth); }

QRectF AnalogVU::peakLamp() const { return {face().right() - 18, face().top() + 11, 7, 7}; }

// The area that the needle and its shadow cover at the angles `from` and `to`. It is made of four flat
// rectangles, one above the other: a single rectangle around a slanted line would be mostly empty.
QRegion AnalogVU::sweptBetween(double from, double to) const {
    constexpr int bands = 4;
    const QRectF area = face();
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

void AnalogVU::redraw(const QRegion& region) {
    update(region);
    needleArea->update(region.translated(-needleArea->pos()));
}

void AnalogVU::resizeEvent(QResizeEvent*) {
    constexpr int roundCorner = 3;  // the rounded corners of the face are transparent
    needleArea->setGeometry(
        face().toAlignedRect().adjusted(roundCorner, roundCorner, -roundCorner, -roundCorner));
}

void AnalogVU::paint(QPainter& painter) {
    Paint::cached(painter, QStringLiteral("vu"), bezel(), [&](QPainter& canvas) {
        canvas.translate(-bezel().topLeft());
        Paint::fill(canvas, bezel(), 16,
                    Theme::vertical(bezel(), Theme::rgb(0.2, 0.21, 0.25), Theme::rgb(0.08, 0.085, 0.1)));
        Paint::edge(canvas, bezel(), 16, Theme::rim(bezel()));
        drawFace(canvas, face());
    });
    drawNeedle(painter);
    Paint::cached(painter, QStringLiteral("vu glass"), face(),
                  [&](QPainter& canvas) { drawGlass(canvas, QRectF(QPointF(), face().size())); });
    const bool peak = vu() > fullScale;
    if (peak) Paint::dropShadow(painter, peakLamp(), 3.5, {red(), 8, 0});
    Paint::fill(painter, peakLamp(), 3.5, peak ? Theme::rgb(1, 0.16, 0.1) : Theme::rgb(0.35, 0.12, 0.08));
    const QRectF caption(0, bezel().bottom() + 6, width(), captionHeight - 6);
    Paint::cached(painter, label, caption, [&](QPainter& canvas) {
        Paint::text(canvas, QRectF(QPointF(), caption.size()), Qt::AlignCenter, label,
                    {Theme::font(11, QFont::Normal, 2), Theme::secondary, {}, false});
    });
}

void AnalogVU::drawNeedle(QPainter& painter) const {
    const QRectF area = face();
    const QPointF pivot = pivotOf(area);
    const double angle = needle.position();
    const QPointF tip = onCircle(pivot, needleLength * area.height(), angle);
    // Pieces of a sixth are low enough for the toolkit to draw them without starting other threads.
    constexpr int pieces = 6;
    const QPointF base = onCircle(pivot, (pivotDepth - 1) * area.height(), angle);
    painter.save();
    painter.setClipRect(area.adjusted(1, 1, -1, -1), Qt::IntersectClip);
    const auto draw = [&](const QColor& color, double width, QPointF offset) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::FlatCap));
        for (int i = 0; i < pieces; ++i)
            painter.drawLine(base + (tip - base) * i / pieces + offset,
                             base + (tip - base) * (i + 1) / pieces + offset);
    };
    draw(Theme::black(0.22), 2.6, QPointF(2.5, 2.5));
    draw(brown(), 1.6, {});
    painter.restore();
}

}  // namespace Kit
