#include "ui/pages/channelstrip.hpp"

#include "ui/pages/modulesetting.hpp"
#include "ui/pages/switchkey.hpp"

#include "ui/kit/bind.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"

#include <QVBoxLayout>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double lowestGain = -60;  // dB
constexpr double highestInputGain = 6;
constexpr double highestOutputGain = 15;

}  // namespace

ChannelStrip::ChannelStrip(AppModel& model, std::string_view channel, const QString& title, double height,
                           QWidget* parent)
    : QWidget(parent) {
    const ModuleSetting<GainValue> gain(model, ModuleKind::gain, channel);
    auto* const fader =
        new Kit::Fader(title, {lowestGain, isInput(channel) ? highestInputGain : highestOutputGain}, 0,
                       Formats::decibels, {.height = height, .levels = 1}, this);
    Kit::bind(
        *fader, [gain] { return gain.value().db; },
        [gain](double db) { gain.edit([db](GainValue& value) { value.db = static_cast<float>(db); }); });
    Kit::bind(
        static_cast<QObject&>(*fader), [&model, channel] { return model.meter(channel); },
        [fader](float level) { fader->setLevels({level}); });

    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(6);
    rows->addWidget(fader, 0, Qt::AlignHCenter);
    rows->addSpacing(6);
    for (Kit::PillButton* const key : {muteKey(model, channel, this), polarityKey(model, channel, this)}) {
        key->setAccessibleDescription(title);
        rows->addWidget(key, 0, Qt::AlignHCenter);
    }
}

Kit::PillButton* muteKey(AppModel& model, std::string_view channel, QWidget* parent) {
    const ModuleSetting<GainValue> gain(model, ModuleKind::gain, channel);
    auto* const key = new Kit::PillButton(QStringLiteral("MUTE"), Kit::PillButton::Size::compact, parent);
    key->action = [gain] { gain.edit([](GainValue& value) { value.mute = !value.mute; }); };
    Kit::bind(
        *key, [gain] { return gain.value().mute; }, [key](bool muted) { key->setOn(muted); });
    return key;
}

Kit::PillButton* polarityKey(AppModel& model, std::string_view channel, QWidget* parent) {
    const SwitchTitles titles{QStringLiteral("180°"), QStringLiteral("0°")};
    const ModuleSetting<GainValue> gain(model, ModuleKind::gain, channel);
    auto* const key = switchKey(
        titles, [gain] { return !gain.value().phaseNormal; },
        [gain] { gain.edit([](GainValue& value) { value.phaseNormal = !value.phaseNormal; }); }, parent);
    key->reserveFor({QStringLiteral("MUTE"), titles.lit, titles.unlit});
    return key;
}

}  // namespace Corvane
