#include "ui/pages/technical/channelstrip.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/bindfield.hpp"
#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/mutebutton.hpp"
#include "ui/pages/shared/switchbutton.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/roving.hpp"

#include <QVBoxLayout>

namespace Corvane {

using namespace Wendril;

ChannelStrip::ChannelStrip(AppModel& model, std::string_view channel, const QString& title, double height,
                           QWidget* parent)
    : QWidget(parent) {
    const ModuleSetting<GainValue> gain(model, ModuleKind::gain, channel);
    auto* const fader =
        faderFor(gain.limits("db"), title, Formats::decibels, {.height = height, .levels = 1}, this);
    bindField(*fader, gain, &GainValue::db);
    Corvane::bind(
        *this, [&model, channel] { return model.meter(channel); },
        [fader](float level) { fader->setLevels({level}); });

    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(6);
    rows->addWidget(fader, 1, Qt::AlignHCenter);
    rows->addSpacing(6);
    auto* const mute = muteButton(model, channel, spoken(title), this);
    auto* const polarity = polarityButton(model, channel, spoken(title), this);
    rows->addWidget(mute, 0, Qt::AlignHCenter);
    rows->addWidget(polarity, 0, Qt::AlignHCenter);
    (new Kit::Roving(0, Kit::Roving::Choice::stays, this))->setControls({mute, polarity});
}

Kit::PillButton* muteButton(AppModel& model, std::string_view channel, const QString& name, QWidget* parent) {
    const ModuleSetting<GainValue> gain(model, ModuleKind::gain, channel);
    auto* const button = new Kit::PillButton(QStringLiteral("MUTE"), Kit::PillButton::Size::compact, parent);
    markAsMute(*button, name);
    button->action = [gain] { gain.edit([](GainValue& value) { value.mute = !value.mute; }); };
    Corvane::bind(
        *button, [gain] { return gain.value().mute; }, [button](bool muted) { button->setOn(muted); });
    return button;
}

Kit::PillButton* polarityButton(AppModel& model, std::string_view channel, const QString& name,
                                QWidget* parent) {
    const SwitchTitles titles{QStringLiteral("180°"), QStringLiteral("0°")};
    const ModuleSetting<GainValue> gain(model, ModuleKind::gain, channel);
    auto* const button = switchButton(
        QStringLiteral("Polaridade invertida, ") + name, titles, [gain] { return !gain.value().phaseNormal; },
        [gain] { gain.edit([](GainValue& value) { value.phaseNormal = !value.phaseNormal; }); }, parent);
    button->reserveFor({QStringLiteral("MUTE"), titles.lit, titles.unlit});
    return button;
}

}  // namespace Corvane
