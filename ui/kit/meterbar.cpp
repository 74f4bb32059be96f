#include "ui/kit/meterbar.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/painting.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Kit {

namespace {

constexpr double emptyLevel = -60;
constexpr double fullLevel = 6;
constexpr double glowBlur = 3;
constexpr double litPicture = 256;  // height of the bar that the kept pictures are of

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

// Its colours run from one end of the lit part to the other; above it nothing changes.
void MeterBar::showFill() {
    const double before = litHeight(std::exchange(shown, fill.position()));
    const double now = litHeight(shown);
    if (now == before) return;
    const int lit = static_cast<int>(std::max(before, now)) + 2 * glow;
    update(0, height() - lit, width(), lit);
}

QString MeterBar::valueText() const {
    return std::isfinite(level) ? Formats::decibels(level) : QStringLiteral("—");
}

// Bars move all the time, and the toolkit fills tall shapes with several
// threads, which costs more than it saves: so its ends are kept pictures, and what lies between them
// is one that is stretched.
void MeterBar::paint(QPainter& painter) {
    const QRectF track((width() - barWidth) / 2, glow, barWidth, height() - 2 * glow);
    Paint::cached(painter, QStringLiteral("meter track"), rect(), [&](QPainter& ink) {
        Paint::fill(ink, track, barWidth / 2, Theme::faded(Theme::accent, 0.12));
    });
    const double lit = litHeight(fill.position());
    if (lit < 1) return;
    const double end = std::min(std::ceil(barWidth / 2), lit / 2);
    const double top = track.bottom() - lit;
    const auto drawn = [&](const QString& part, const QRectF& place, double offset) {
        Paint::cached(painter, part + QString::number(end), place, [&](QPainter& ink) {
            drawLit(ink, QRectF(track.left(), offset, barWidth, litPicture), end);
        });
    };
    drawn(QStringLiteral("meter top "), QRectF(0, top - glow, width(), glow + end), glow);
    drawn(QStringLiteral("meter bottom "), QRectF(0, track.bottom() - end, width(), end + glow),
          end - litPicture);
    if (lit <= 2 * end) return;
    Paint::stretched(painter, QStringLiteral("meter middle"), QSizeF(width(), litPicture - 2 * end),
                     QRectF(0, top + end, width(), lit - 2 * end), [&](QPainter& ink) {
                         drawLit(ink, QRectF(track.left(), -end, barWidth, litPicture), end);
                     });
}

}  // namespace Kit
