#include "ui/pages/simple/delaybay.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/bindfield.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/delaybutton.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/text.hpp"

#include <QVBoxLayout>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double leastTrack = 300;
constexpr double cornerRadius = 18;
constexpr QMargins margins(16, 20, 16, 18);

constexpr double tickGap = 10;  // between a scale and the fader
constexpr double longTick = 9;
constexpr double shortTick = 5;
constexpr double textGap = 6;

}  // namespace

DelayBay::DelayBay(AppModel& model, int output, QWidget* parent)
    : QWidget(parent) {
    const std::string_view channel = K7Q::outputs.at(static_cast<std::size_t>(output));
    const ModuleSetting<DelayValue> delay(model, ModuleKind::delay, channel);
    const Limits limits = delay.limits("ms");
    fader = faderFor(limits, QStringLiteral("Saída %1").arg(output + 1), Formats::delay,
                     {.height = leastTrack, .hasScale = false}, this);
    fader->spokenFormat = Formats::spokenDelay;
    bindField(*fader, delay, &DelayValue::ms);

    auto* const distance = new Kit::Caption({}, Theme::font(12, QFont::Medium), Theme::secondary, this);
    distance->setTabular(true);
    distance->setAlignment(Qt::AlignCenter);
    distance->reserveFor(Formats::distance(limits.highest));
    Corvane::bind(
        *distance, [delay] { return delay.value().ms; },
        [distance](float ms) { distance->setText(Formats::distance(ms)); });

    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(margins);
    rows->setSpacing(12);
    rows->addWidget(fader, 1, Qt::AlignHCenter);
    rows->addWidget(distance, 0, Qt::AlignHCenter);
    rows->addWidget(delayButton(channel, delay, this), 0, Qt::AlignHCenter);
}

void DelayBay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.scale(growth, growth);
    const QRectF bay(QPointF(), QSizeF(size()) / growth);
    Paint::cached(painter, QStringLiteral("delay bay"), bay, [&](QPainter& canvas) {
        Paint::recess(canvas, bay, cornerRadius, 0.36, 0.14);
        drawScales(canvas);
    });
}

void DelayBay::drawScales(QPainter& painter) const {
    drawScale(painter, Qt::AlignRight, {.unit = "ms", .perMs = 1, .tick = 0.2, .ticksPerLabel = 5});
    drawScale(painter, Qt::AlignLeft,
              {.unit = "cm", .perMs = Formats::centimetresPerMs, .tick = 10, .ticksPerLabel = 5});
}

// `text`: the side of its ticks at which a label is aligned; the fader is on the other side of it.
void DelayBay::drawScale(QPainter& painter, Qt::Alignment text, const Scale& scale) const {
    const QRectF frame(QPointF(fader->pos()) / growth, QSizeF(fader->size()) / growth);
    const bool isLeft = text == Qt::AlignRight;
    const double outward = isLeft ? -1 : 1;
    const double start = isLeft ? frame.left() - tickGap : frame.right() + tickGap;
    for (int i = 0; i * scale.tick <= fader->range.upper * scale.perMs; ++i) {
        const double y = frame.top() + fader->placeOf(i * scale.tick / scale.perMs);
        const bool isLong = i % scale.ticksPerLabel == 0;
        painter.setPen(QPen(Theme::faded(Theme::tick, isLong ? 0.75 : 0.4), isLong ? 1.6 : 1.1, Qt::SolidLine,
                            Qt::RoundCap));
        painter.drawLine(QPointF(start, y), QPointF(start + outward * (isLong ? longTick : shortTick), y));
        if (!isLong) continue;
        QRectF place(0, 0, 60, 14);
        place.moveCenter({start + outward * (longTick + textGap + place.width() / 2), y});
        Paint::text(painter, place, text | Qt::AlignVCenter,
                    QString::asprintf("%.0f %s", i * scale.tick, scale.unit),
                    {Theme::font(10), Theme::secondary, {}, true});
    }
}

}  // namespace Corvane
