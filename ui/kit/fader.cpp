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
constexpr double outsideTravel = 30;  // the part of the track's height that the cap cannot travel
constexpr double capHeight = 26;
constexpr double capRadius = 10;
constexpr double trackRadius = capRadius + (outsideTravel - capHeight) / 2;  // around the cap at its ends
constexpr int barWidth = 4;
constexpr int barPitch = 9;
constexpr int barPadding = 18;

// With bars beside it the cap is narrower and the slot left of the middle.
constexpr double capWidth = 44;
constexpr double narrowCapWidth = 32;
constexpr double slotBesideBars = 19;
constexpr double besideSlot = 4.5;  // between its middle and the scale
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
    setFixedWidth(controlWidth);
    setMinimumHeight(static_cast<int>(look.height) + labels);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    if (look.levels == 0) return;
    QStringList names;
    for (int i = 1; i <= look.levels; ++i)
        names << QStringLiteral("%1, nível %2").arg(title).arg(i);
    bars = new MeterBars(
        names, {barWidth, barPitch},
        [this](QPainter& painter) {
            painter.save();
            painter.scale(growth(), growth());
            drawSlider(painter);
            painter.restore();
        },
        this);
}

QSize Fader::sizeHint() const { return minimumSize(); }

void Fader::resizeEvent(QResizeEvent*) {
    if (!bars) return;
    constexpr int glow = MeterBars::glow;
    const QRect room = track().toRect().adjusted(0, barPadding - glow, 0, glow - barPadding);
    const double left = growth() * (room.left() + centreOfBars) - bars->width() / 2.0;
    const QRect place = grown(QRectF(0, room.top(), 0, room.height())).toRect();
    bars->setGeometry(static_cast<int>(std::round(left)), place.top(), bars->width(), place.height());
}

void Fader::setLevels(const std::vector<float>& levels) {
    if (bars) bars->setLevels(levels);
}

double Fader::stepSize() const { return range.extent() > wideRange ? wideStep : quantum; }

QRectF Fader::track() const {
    const double top = look.labelsBelow ? 0 : labels;
    return {0, top, controlWidth, area().height() - labels};
}

QRectF Fader::readOut() const {
    const double top = look.labelsBelow ? track().bottom() + labelGap : 0;
    return {0, top + labelLine, controlWidth, labelLine};
}

Control::Outline Fader::outline() const { return {track(), trackRadius}; }

double Fader::slotCentre() const { return bars ? track().left() + slotBesideBars : track().center().x(); }

double Fader::placeOf(double value) const {
    const double travel = track().height() - outsideTravel;
    return track().top() + outsideTravel / 2 + (range.upper - value) / range.extent() * travel;
}

QRectF Fader::cap() const {
    const double middle = placeOf(range.lower + fraction() * range.extent());
    const double width = bars ? narrowCapWidth : capWidth;
    return {slotCentre() - width / 2, middle - capHeight / 2, width, capHeight};
}

bool Fader::isBright() const { return isHovered() || isDragging(); }

double Fader::dragged(double start, QPointF translation, Qt::KeyboardModifiers) const {
    return start - range.extent() * translation.y() / growth() / (track().height() - outsideTravel);
}

void Fader::paint(QPainter& painter) {
    if (bars && (drawnCap != cap() || drawnBright != isBright())) bars->outdateGround();
    drawnCap = cap();
    drawnBright = isBright();
    drawSlider(painter);
    drawTexts(painter);
}

void Fader::drawSlider(QPainter& painter) const {
    const QString key = QStringLiteral("fader track %1 %2").arg(range.upper).arg(look.levels);
    Paint::cached(painter, key, track(), [this](QPainter& canvas) {
        canvas.translate(-track().topLeft());
        drawTrack(canvas);
    });
    drawNumbers(painter);
    drawCap(painter);
}

void Fader::drawTrack(QPainter& painter) const {
    Paint::well(painter, track(), trackRadius);
    const QRectF slot(slotCentre() - 2, track().top() + 14, 4, track().height() - 28);
    Paint::fill(painter, slot, 2, Theme::black(0.55));
    Paint::edge(painter, slot, 2, Theme::recessRim(slot), 0.6);
    painter.setPen(QPen(Theme::faded(Theme::tick, 0.6), 1));
    for (const double value : marks()) {
        constexpr double length = 4;
        const double y = placeOf(value);
        const double right = slotCentre() - besideSlot;
        painter.drawLine(QPointF(right - length, y), QPointF(right, y));
    }
}

std::vector<double> Fader::marks() const {
    if (!look.hasScale) return {};
    return {range.upper, 0, -10, -20, -40, range.lower};
}

// At the right of the slot. One that the cap would cover in part is left out: the end of "-10" reads as 0.
void Fader::drawNumbers(QPainter& painter) const {
    constexpr double size = 8;
    for (const double value : marks()) {
        const double y = placeOf(value);
        if (std::abs(y - cap().center().y()) < (capHeight + size) / 2) continue;
        const QRectF place(slotCentre() + besideSlot + 2, y - size, controlWidth, 2 * size);
        Paint::text(painter, place, Qt::AlignLeft, QString::asprintf(value > 0 ? "+%.0f" : "%.0f", value),
                    {Theme::font(size, QFont::Medium), Theme::secondary, {}, true});
    }
}

void Fader::drawCap(QPainter& painter) const {
    constexpr double room = 12;  // for the shadow around the cap
    const QRectF handle = cap();
    const bool bright = isBright();
    painter.save();
    painter.setClipRect(Paint::snapped(painter, track()), Qt::IntersectClip);
    Paint::cached(
        painter, QStringLiteral("fader cap %1").arg(int(bright)), handle.adjusted(-room, -room, room, room),
        [&](QPainter& canvas) {
            const QRectF local(QPointF(room, room), handle.size());
            Paint::dropShadow(canvas, local, capRadius, {Theme::black(0.6), 6, 3});
            Paint::fill(canvas, local, capRadius,
                        Theme::vertical(local, Theme::rgb(0.30, 0.315, 0.36), Theme::rgb(0.17, 0.18, 0.215)));
            if (bright) Paint::fill(canvas, local, capRadius, Theme::white(0.08));
            Paint::edge(canvas, local, capRadius, Theme::rim(local));
            QRectF grip(0, 0, local.width() - 16, 2.4);
            grip.moveCenter(local.center());
            const QRectF groove = grip.adjusted(-2, -1.4, 2, 1.6);
            Paint::fill(canvas, groove, groove.height() / 2, Theme::black(0.5));
            Paint::edge(canvas, groove, groove.height() / 2,
                        Theme::vertical(groove, Theme::black(0.3), Theme::white(0.16)), 0.6);
            Paint::fill(canvas, grip, 1.2, Theme::grey(0.92));
        });
    painter.restore();
}

// A caption that is too wide for the fader is set closer.
void Fader::drawTexts(QPainter& painter) const {
    constexpr double tracking = 2;
    const QRectF number = readOut();
    const QString caption = title.toUpper();
    const auto styleOf = [](double between) {
        return Paint::TextStyle{Theme::font(12, QFont::DemiBold, between), Theme::text, {}, false};
    };
    const double tooWide = Paint::textWidth(caption, styleOf(tracking)) - tracking - controlWidth;
    const double closer = std::max(0.0, tooWide) / std::max(1.0, double(caption.size()) - 1);
    Paint::text(painter, number.translated(0, -labelLine), Qt::AlignCenter, caption,
                styleOf(tracking - closer));
    if (!isEditing())
        Paint::text(painter, number, Qt::AlignCenter, valueText(),
                    {Theme::font(13, QFont::Medium), Theme::text, {}, true});
}

}  // namespace Kit
