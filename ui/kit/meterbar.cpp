#include "ui/kit/meterbar.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Kit {

namespace {

constexpr double emptyLevel = -60;
constexpr double fullLevel = 6;
constexpr double glowBlur = 3;
constexpr double pictureHeight = 256;  // of the lit bar that the kept pictures are parts of

void drawLit(QPainter& painter, const QRectF& bar, double radius) {
    Paint::dropShadow(painter, bar, radius, {Theme::faded(Theme::accent, 0.9), glowBlur, 0});
    QLinearGradient heat(bar.topLeft(), bar.bottomLeft());
    heat.setColorAt(0, Theme::rgb(1.0, 0.75, 0.4));
    heat.setColorAt(0.5, Theme::accent);
    heat.setColorAt(1, Theme::faded(Theme::accent, 0.6));
    Paint::fill(painter, bar, radius, heat);
}

}  // namespace

MeterBar::MeterBar(double width, QWidget* parent)
    : Control(parent)
    , barWidth(width)
    , level(-std::numeric_limits<float>::infinity())
    , fill(Animation::Kind::even, 0, *this, [this] { showFill(); }) {
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedWidth(static_cast<int>(std::ceil(width)) + 2 * glow);
}

double MeterBar::fractionOf(float level) {
    if (!std::isfinite(level)) return 0;
    return std::clamp((level - emptyLevel) / (fullLevel - emptyLevel), 0.0, 1.0);
}

void MeterBar::setLevel(float value) {
    level = value;
    fill.moveTo(fractionOf(value));
}

double MeterBar::litHeight(double fraction) const { return std::round(fraction * (height() - 2 * glow)); }

// The gradient spans the lit part, so that all of it changes with its height. Above it nothing changes.
void MeterBar::showFill() {
    const double before = litHeight(std::exchange(drawn, fill.position()));
    const double now = litHeight(drawn);
    if (now == before) return;
    const int lit = static_cast<int>(std::max(before, now)) + 2 * glow;
    update(0, height() - lit, width(), lit);
}

QString MeterBar::valueText() const {
    return std::isfinite(level) ? Formats::decibels(level) : QStringLiteral("—");
}

std::optional<MeterLevel> MeterBar::meteredLevel() const {
    return MeterLevel{emptyLevel + fractionOf(level) * (fullLevel - emptyLevel), emptyLevel, fullLevel};
}

// Bars are redrawn many times a second. The toolkit fills tall shapes with several threads, which costs
// more than it saves. The lit part is therefore made of kept pictures: its two ends, and between them one
// that is stretched to the height needed.
void MeterBar::paint(QPainter& painter) {
    const QRectF track((width() - barWidth) / 2, glow, barWidth, height() - 2 * glow);
    Paint::cached(painter, QStringLiteral("meter track"), rect(), [&](QPainter& canvas) {
        Paint::fill(canvas, track, barWidth / 2, Theme::faded(Theme::accent, 0.12));
    });
    const double lit = litHeight(fill.position());
    if (lit < 1) return;
    const double end = std::min(std::ceil(barWidth / 2), lit / 2);
    const double top = track.bottom() - lit;
    const auto drawEnd = [&](const QString& part, const QRectF& place, double offset) {
        Paint::cached(painter, part + QString::number(end), place, [&](QPainter& canvas) {
            drawLit(canvas, QRectF(track.left(), offset, barWidth, pictureHeight), end);
        });
    };
    drawEnd(QStringLiteral("meter top "), QRectF(0, top - glow, width(), glow + end), glow);
    drawEnd(QStringLiteral("meter bottom "), QRectF(0, track.bottom() - end, width(), end + glow),
            end - pictureHeight);
    if (lit <= 2 * end) return;
    Paint::stretched(painter, QStringLiteral("meter middle"), QSizeF(width(), pictureHeight - 2 * end),
                     QRectF(0, top + end, width(), lit - 2 * end), [&](QPainter& canvas) {
                         drawLit(canvas, QRectF(track.left(), -end, barWidth, pictureHeight), end);
                     });
}

}  // namespace Kit
