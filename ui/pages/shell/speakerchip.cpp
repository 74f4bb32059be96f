#include "ui/pages/shell/speakerchip.hpp"

#include "ui/kit/lamp.hpp"
#include "ui/kit/shadows.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr int padding = 14;
constexpr int lampGap = 8;

}  // namespace

SpeakerChip::SpeakerChip(const QString& title, const QString& name, QWidget* parent)
    : Button(parent)
    , title(title)
    , label(name.isEmpty() ? title : title + QStringLiteral(" · ") + name)
    , titleWidth(textWidth(title))
    , labelWidth(textWidth(label)) {
    setUse(Use::choice);
    setAccessibleName(label);
    describe();
}

void SpeakerChip::setSelected(bool value) {
    if (selected == value) return;
    selected = value;
    stateChanged();
}

void SpeakerChip::setOnline(bool value) {
    online = value;
    update();
}

void SpeakerChip::setIncomplete(bool value) {
    incomplete = value;
    describe();
    update();
}

void SpeakerChip::describe() {
    QStringList facts;
    if (!keys.isEmpty()) facts << keys;
    if (incomplete) facts << QStringLiteral("Leitura incompleta");
    setAccessibleDescription(facts.join(QStringLiteral(", ")));
    setToolTip((QStringList(label) + facts).join(u'\n'));
}

void SpeakerChip::setKeys(const QString& value) {
    keys = value;
    describe();
}

// Rounded up as a whole: the widths of title and name are not rounded by themselves.
int SpeakerChip::widthFor(int nameWidth) const {
    const double text = std::min(titleWidth + nameWidth, labelWidth);
    return static_cast<int>(std::ceil(text + (online ? Kit::lampSize + lampGap : 0) + 2 * padding));
}

int SpeakerChip::nameWidth() const { return static_cast<int>(std::ceil(labelWidth - titleWidth)); }

double SpeakerChip::textWidth(const QString& text) const { return Paint::textWidth(text, style()); }

Paint::TextStyle SpeakerChip::style() const {
    return {Theme::font(12, QFont::DemiBold, 1), selected ? Theme::text : Theme::secondary, {}, true};
}

Kit::Control::Outline SpeakerChip::outline() const { return {rect(), height() / 2.0}; }

// What is being typed elsewhere is set when it loses the focus. A screen reader can act without moving
// the focus, but that text is meant for the speakers edited so far.
void SpeakerChip::activate() {
    setFocus(Qt::OtherFocusReason);
    Button::activate();
}

void SpeakerChip::focusInEvent(QFocusEvent* event) {
    Button::focusInEvent(event);
    if (focused) focused();
}

void SpeakerChip::paint(QPainter& painter) {
    const QRectF capsule = Paint::snapped(painter, rect());
    const double radius = capsule.height() / 2;
    const bool bright = isHovered() && !isPressed();
    Paint::fillKept(painter, capsule, radius, Theme::legible);
    Paint::fillKept(painter, capsule, radius, selected ? Theme::accentSoft : Theme::white(0.04));
    if (bright) Paint::fillKept(painter, capsule, radius, Theme::white(0.06));
    if (isPressed()) Paint::innerShadow(painter, capsule, radius, {Theme::black(0.7), 5, 3});
    Paint::edge(painter, capsule, radius,
                selected ? Theme::faded(Theme::accent, bright ? 0.8 : 0.5)
                         : Theme::white(bright ? 0.2 : 0.06));
    double left = padding;
    if (online) {
        const QRectF lamp(padding, 0, Kit::lampSize, height());
        if (*online && incomplete)
            Kit::drawHollowLamp(painter, lamp, Theme::good);
        else
            Kit::drawLamp(painter, lamp, Theme::good, *online);
        left += Kit::lampSize + lampGap;
    }
    // Two pixels of the padding are for the letter spacing behind the last letter.
    const QRectF room(left, 0, width() - left - padding + 2, height());
    const bool showsName =
        labelWidth <= room.width() + 1 || textWidth(title + QStringLiteral(" · …")) <= room.width();
    Paint::text(painter, room, Qt::AlignLeft | Qt::AlignVCenter, showsName ? label : title, style());
}

}  // namespace Corvane
