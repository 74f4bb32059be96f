#include "ui/kit/fader.hpp"

#include "ui/kit/pictures.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include <algorithm>
#include <cmath>

namespace Kit {

namespace {

constexpr double quantum = 0.1;
constexpr int controlWidth = 64;
constexpr double trackRadius = 22;
constexpr double outsideTravel = 30;  // the part of the track's height that the cap cannot travel
constexpr double capHeight = 26;
constexpr int barWidth = 4;
constexpr int barPitch = 9;
constexpr int barPadding = 18;

// With bars beside it the cap is narrower and the slot left of the middle.
constexpr double capWidth = 44;
constexpr double narrowCapWidth = 32;
constexpr double slotBesideBars = 22;
constexpr double centreOfBars = 50;

// Arrow keys and the wheel move by `wideStep` on a range of more than `wideRange` (gains in dB), and by
// the quantum on a smaller one (delays of a few ms).
constexpr double wideRange = 20;
constexpr double wideStep = 0.5;

constexpr int labels = 2 * Fader::labelLine + Fader::labelGap;

}  // namespace

Fader::Fader(const QString& title, Range range, double defaultValue, Format format, const Look& look,
             QWidget* parent)
    : ValueControl(range, defaultValue, quantum, std::move(format), parent)
    , title(title)
    , look(look) {
    setAccessibleName(title);
    setFixedWidth(controlWidth + 24);
    setMinimumHeight(static_cast<int>(look.height) + labels);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    for (int i = 0; i < look.levels; ++i) {
        bars.push_back(new MeterBar(barWidth, this));
        bars.back()->setAccessibleName(QStringLiteral("%1, nível %2").arg(title).arg(i + 1));
    }
}

QSize Fader::sizeHint() const { return minimumSize(); }

void Fader::resizeEvent(QResizeEvent*) {
    const QRect room = track().toRect().adjusted(0, barPadding, 0, -barPadding);
    double centre = room.left() + centreOfBars - (look.levels - 1) / 2.0 * barPitch;
    for (MeterBar* const bar : bars) {
        bar->setGeometry(static_cast<int>(std::round(centre - bar->width() / 2.0)),
                         room.top() - MeterBar::glow, bar->width(), room.height() + 2 * MeterBar::glow);
        centre += barPitch;
    }
}

void Fader::setLevels(const std::vector<float>& levels) {
    for (std::size_t i = 0; i < std::min(levels.size(), bars.size()); ++i)
        bars[i]->setLevel(levels[i]);
}

double Fader::stepSize() const { return range.extent() > wideRange ? wideStep : quantum; }

QRectF Fader::track() const {
    const double top = look.labelsBelow ? 0 : labels;
    return {(width() - controlWidth) / 2.0, top, controlWidth, double(height() - labels)};
}

Control::Outline Fader::outline() const { return {track(), trackRadius}; }

double Fader::slotCentre() const {
    return bars.empty() ? track().center().x() : track().left() + slotBesideBars;
}

double Fader::placeOf(double value) const {
    const double travel = track().height() - outsideTravel;
    return track().top() + outsideTravel / 2 + (range.upper - value) / range.extent() * travel;
}

QRectF Fader::cap() const {
    const double middle = placeOf(range.lower + fraction() * range.extent());
    const double width = bars.empty() ? capWidth : narrowCapWidth;
    return {slotCentre() - width / 2, middle - capHeight / 2, width, capHeight};
}

double Fader::dragged(double start, QPointF translation, Qt::KeyboardModifiers) const {
    return start - range.extent() * translation.y() / (track().height() - outsideTravel);
}

void Fader::paint(QPainter& painter) {
    Paint::well(painter, track(), trackRadius);
    const QRectF slot(slotCentre() - 2, track().top() + 14, 4, track().height() - 28);
    Paint::fill(painter, slot, 2, Theme::black(0.55));
    Paint::edge(painter, slot, 2, Theme::recessRim(slot), 0.6);

    const QRectF handle = cap();
    const bool bright = isHovered() || isDragging();
    Paint::dropShadow(painter, handle, 10, {Theme::black(0.6), 6, 3});
    Paint::cached(painter, QStringLiteral("fader cap %1").arg(int(bright)), handle, [&](QPainter& canvas) {
        const QRectF local(QPointF(), handle.size());
        Paint::fill(canvas, local, 10,
                    Theme::vertical(local, Theme::rgb(0.30, 0.315, 0.36), Theme::rgb(0.17, 0.18, 0.215)));
        if (bright) Paint::fill(canvas, local, 10, Theme::white(0.05));
        Paint::edge(canvas, local, 10, Theme::rim(local));
        QRectF grip(0, 0, local.width() - 16, 2.4);
        grip.moveCenter(local.center());
        Paint::fill(canvas, grip, 1.2, Theme::grey(0.92));
    });

    const double top = look.labelsBelow ? track().bottom() + labelGap : 0;
    Paint::text(painter, {0, top, double(width()), labelLine}, Qt::AlignCenter, title.toUpper(),
                {Theme::font(12, QFont::DemiBold, 2), Theme::text, {}, false});
    Paint::text(painter, {0, top + labelLine, double(width()), labelLine}, Qt::AlignCenter, valueText(),
                {Theme::font(13, QFont::Medium), Theme::text, {}, true});
}

}  // namespace Kit
