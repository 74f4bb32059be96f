#include "ui/pages/shell/speakerchips.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/text.hpp"

#include "ui/kit/button.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/shadows.hpp"
#include "ui/kit/text.hpp"

#include "Wendril/text.hpp"

#include <QHBoxLayout>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Corvane {

namespace {

constexpr int horizontalPadding = 14;
constexpr int verticalPadding = 8;
constexpr int lineHeight = 15;
constexpr int lampGap = 8;
constexpr int chipGap = 8;
constexpr int chipHeight = lineHeight + 2 * verticalPadding;

class SpeakerChip final : public Kit::Button {
public:
    SpeakerChip(const QString& address, const QString& model, QWidget* parent)
        : Button(parent)
        , address(address)
        , label(address + QStringLiteral(" · ") + model) {
        setAccessibleName(label);
        setToolTip(label);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }

    void setSelected(bool value) {
        selected = value;
        stateChanged();
    }

    void setOnline(bool value) {
        online = value;
        update();
    }

    bool isCheckable() const override { return true; }
    bool isChecked() const override { return selected; }
    QSize sizeHint() const override { return sizeFor(label); }
    QSize minimumSizeHint() const override { return sizeFor(address); }

protected:
    void paint(QPainter& painter) override {
        const QRectF capsule = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        const double radius = capsule.height() / 2;
        const double hover = isHovered() && isEnabled() ? 0.03 : 0;
        Paint::fill(painter, capsule, radius, selected ? Theme::accentSoft : Theme::white(0.04 + hover));
        Paint::edge(painter, capsule, radius,
                    selected ? Theme::faded(Theme::accent, 0.5) : Theme::white(0.06 + hover));
        const QRectF lamp(horizontalPadding, 0, Kit::lampSize, height());
        Kit::drawLamp(painter, lamp, Theme::good, online);
        const QRectF room(lamp.right() + lampGap, 0, width() - lamp.right() - lampGap - horizontalPadding + 2,
                          height());
        const bool roomForAll = Paint::textWidth(label, style()) <= room.width() + 1;
        const bool roomForMore = Paint::textWidth(address + QStringLiteral(" · …"), style()) <= room.width();
        Paint::text(painter, room, Qt::AlignLeft | Qt::AlignVCenter,
                    roomForAll || roomForMore ? label : address, style());
    }

    Outline outline() const override {
        return {QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), height() / 2.0};
    }

private:
    Paint::TextStyle style() const {
        return {Theme::font(12, QFont::DemiBold, 1), selected ? Theme::text : Theme::secondary, {}, true};
    }

    QSize sizeFor(const QString& text) const {
        const double width =
            Paint::textWidth(text, style()) + Kit::lampSize + lampGap + 2 * horizontalPadding;
        return {static_cast<int>(std::ceil(width)), chipHeight};
    }

    const QString address;
    const QString label;
    bool selected = false;
    bool online = false;
};

}  // namespace

SpeakerChips::SpeakerChips(AppModel& model, QWidget* parent)
    : QScrollArea(parent)
    , model(model) {
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setFocusPolicy(Qt::NoFocus);
    auto* const chips = new QWidget(this);
    row = new QHBoxLayout(chips);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(chipGap);
    setWidget(chips);
    viewport()->setAutoFillBackground(false);
    chips->setAutoFillBackground(false);
    Corvane::bind(
        *this, [&model] { return model.speakers.value(); },
        [this](const Speakers& speakers) { show(speakers); });
}

void SpeakerChips::show(const Speakers& speakers) {
    while (QLayoutItem* const item = row->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    for (const auto& speaker : speakers) {
        const std::uint8_t address = speaker->address;
        auto* const chip = new SpeakerChip(toQString(Wendril::twoDigits(address)),
                                           toQString(speaker->info.value().model), widget());
        chip->action = [this, address] { model.target = address; };
        Corvane::bind(
            *chip, [this, address] { return model.target.value() == address; },
            [this, chip](bool selected) {
                chip->setSelected(selected);
                if (selected) ensureWidgetVisible(chip);
            });
        Corvane::bind(
            *chip, [this] { return model.status.value().isOnline(); },
            [chip](bool online) { chip->setOnline(online); });
        row->addWidget(chip);
    }
    setVisible(!speakers.empty());
    updateGeometry();
}

QSize SpeakerChips::sizeHint() const { return {row->sizeHint().width(), chipHeight}; }

// Wide enough for two chips that show only their addresses.
QSize SpeakerChips::minimumSizeHint() const {
    constexpr int shortestChip = 66;
    return {std::min(row->minimumSize().width(), 2 * shortestChip + chipGap), chipHeight};
}

void SpeakerChips::wheelEvent(QWheelEvent* event) {
    const QPoint turn = event->angleDelta();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() -
                                    (turn.y() != 0 ? turn.y() : turn.x()) / 2);
    event->accept();
}

}  // namespace Corvane
