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
constexpr int pictureHeight = 512;  // of the lit bar in the kept picture, in device pixels

void drawLit(QPainter& painter, const QRectF& bar, double radius, double blur) {
    Paint::dropShadow(painter, bar, radius, {Theme::faded(Theme::accent, 0.9), blur, 0});
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

double MeterBar::barHeight() const { return height() - 2 * glow * growth(); }

double MeterBar::litHeight(double fraction) const { return std::round(fraction * barHeight()); }

// The gradient spans the lit part, so that all of it changes with its height. Above it nothing changes.
void MeterBar::showFill() {
    const double before = litHeight(std::exchange(drawn, fill.position()));
    const double now = litHeight(drawn);
    if (now == before) return;
    const int lit = static_cast<int>(std::max(before, now) + 2 * glow * growth());
    update(0, height() - lit, width(), lit);
}

QString MeterBar::valueText() const {
    return std::isfinite(level) ? Formats::decibels(level) : QStringLiteral("—");
}

std::optional<MeterLevel> MeterBar::meteredLevel() const {
    return MeterLevel{emptyLevel + fractionOf(level) * (fullLevel - emptyLevel), emptyLevel, fullLevel};
}

// Bars are redrawn many times a second. The toolkit fills tall shapes with several threads, which costs
// more than it saves. The lit part is therefore a kept picture whose middle is stretched to the height
// needed. All of it lies on whole device pixels, so that all bars are equally wide.
void MeterBar::paint(QPainter& painter) {
    const QRectF track((area().width() - barWidth) / 2, glow, barWidth, area().height() - 2 * glow);
    Paint::cached(painter, QStringLiteral("meter track"), track, [&](QPainter& canvas) {
        Paint::fill(canvas, QRectF(QPointF(), track.size()), barWidth / 2, Theme::faded(Theme::accent, 0.12));
    });
    const double ratio = Paint::ratioOf(painter);
    const QRect bar = Paint::pixelsOf(painter, track);
    const int lit = static_cast<int>(std::round(litHeight(fill.position()) / barHeight() * bar.height()));
    if (lit < 1) return;
    const int margin = static_cast<int>(std::ceil(glow * ratio));
    const int end = std::min((bar.width() + 1) / 2, lit / 2);
    const QString key = Paint::keyOf("lit meter", {double(bar.width()), double(end), ratio}, {});
    const QPixmap picture = Paint::kept(key, [&] {
        QPixmap pixmap(bar.width() + 2 * margin, pictureHeight + 2 * margin);
        pixmap.fill(Qt::transparent);
        QPainter canvas(&pixmap);
        canvas.setRenderHint(QPainter::Antialiasing);
        drawLit(canvas, QRectF(margin, margin, bar.width(), pictureHeight), end, glowBlur * ratio);
        return pixmap;
    });
    const QRect place(bar.left(), bar.bottom() + 1 - lit, bar.width(), lit);
    Paint::drawStretched(painter, place.adjusted(-margin, -margin, margin, margin), picture,
                         {margin, margin + end});
}

}  // namespace Kit
