#include "ui/kit/meterbar.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/painting.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Kit {

namespace {

constexpr double emptyLevel = -60;
constexpr double fullLevel = 6;
constexpr double glowBlur = 3;

}  // namespace

MeterBar::MeterBar(double width, QWidget* parent)
    : Control(parent)
    , barWidth(width)
    , level(-std::numeric_limits<float>::infinity())
    , fill(Motion::Kind::even, 0, *this, [this] { update(); }) {
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

QString MeterBar::valueText() const {
    return std::isfinite(level) ? Formats::decibels(level) : QStringLiteral("—");
}

void MeterBar::paint(QPainter& painter) {
    const QRectF track((width() - barWidth) / 2, glow, barWidth, height() - 2 * glow);
    Paint::fill(painter, track, barWidth / 2, Theme::faded(Theme::accent, 0.12));
    const double lit = fill.position() * track.height();
    if (lit < 1) return;
    const QRectF bar(track.left(), track.bottom() - lit, barWidth, lit);
    const double radius = std::min(barWidth, lit) / 2;
    Paint::dropShadow(painter, bar, radius, {Theme::faded(Theme::accent, 0.9), glowBlur, 0});
    QLinearGradient heat(bar.topLeft(), bar.bottomLeft());
    heat.setColorAt(0, Theme::rgb(1.0, 0.75, 0.4));
    heat.setColorAt(0.5, Theme::accent);
    heat.setColorAt(1, Theme::faded(Theme::accent, 0.6));
    Paint::fill(painter, bar, radius, heat);
}

}  // namespace Kit
