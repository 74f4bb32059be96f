#include "ui/pages/simple/toneview.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/mutebutton.hpp"
#include "ui/pages/shared/text.hpp"

#include "ui/kit/analogvu.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/group.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/roving.hpp"

#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace Corvane {

using namespace Wendril;

namespace {

// Heights of the rows and the space between them, in the lowest window.
constexpr int meterRow = 184;
constexpr int controlRow = 212;
constexpr int gap = 18;

constexpr int faderTexts = 58;  // height of caption and read-out under a fader
constexpr int trackHeight = meterRow + controlRow + gap - faderTexts;

constexpr float vuReference = -18;  // dB
constexpr double toneStep = 0.5;    // dB

struct ToneKnob {
    ToneBand band;
    const char16_t* title;
};

constexpr ToneKnob toneKnobs[] = {
    {ToneBand::bass, u"Graves"},
    {ToneBand::mid, u"Médios"},
    {ToneBand::treble, u"Agudos"},
};

Kit::PillButton* muteButton(const QString& whatFor, std::function<bool()> muted, std::function<void()> toggle,
                            QWidget* parent) {
    auto* const button = new Kit::PillButton(QStringLiteral("MUDO"), Kit::PillButton::Size::regular, parent);
    markAsMute(*button, whatFor);
    button->action = std::move(toggle);
    Corvane::bind(*button, std::move(muted), [button](bool on) {
        button->setIcon(on ? QStringLiteral("speaker.slash.fill") : QStringLiteral("speaker.wave.2.fill"));
        button->setOn(on);
    });
    return button;
}

std::vector<float> levelsOf(const AppModel& model, std::span<const std::string_view> channels) {
    std::vector<float> levels;
    for (const std::string_view channel : channels)
        levels.push_back(model.meter(channel));
    return levels;
}

// A widget of its own, so that the key M finds the button of a control.
QWidget* column(QWidget* control, QWidget* button, QWidget* parent) {
    auto* const whole = new QWidget(parent);
    auto* const rows = new QVBoxLayout(whole);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(gap);
    rows->addWidget(control, 1, Qt::AlignHCenter);
    rows->addWidget(button, 0, Qt::AlignHCenter);
    return whole;
}

}  // namespace

ToneView::ToneView(AppModel& model, QWidget* parent)
    : PageView(QBoxLayout::LeftToRight, parent)
    , model(model) {
    QWidget* const tone = tonePanel();
    panels().addWidget(tone, 1);
    panels().addWidget(volumePanel());
    setMuteOf(*tone, *inputMute);
}

QWidget* ToneView::tonePanel() {
    auto* const panel = new Kit::Panel(QStringLiteral("TOM"), this);
    panel->content().setSpacing(gap);
    panel->content().addLayout(meters(), 1);
    panel->content().addLayout(knobs());
    panel->content().addWidget(presets());
    return panel;
}

QLayout* ToneView::meters() {
    auto* const row = new QHBoxLayout;
    row->setSpacing(24);
    for (const auto& [input, label] : {std::pair("In0", u"ENTRADA L"), std::pair("In1", u"ENTRADA R")}) {
        auto* const meter = new Kit::AnalogVU(QString::fromUtf16(label), vuReference, this);
        meter->setMinimumHeight(meterRow);
        Corvane::bind(
            *meter, [this, input = input] { return model.meter(input); },
            [meter](float level) { meter->setLevel(level); });
        row->addWidget(meter);
    }
    return row;
}

QLayout* ToneView::knobs() {
    Limits limits = limitsOf(ModuleKind::peq, "gain", K7Q::inputs.front());
    limits.step = toneStep;
    Kit::Knob::Look look = labelledKnob(160, limits);
    look.bipolar = true;
    auto* const row = new QHBoxLayout;
    for (const auto& [band, title] : toneKnobs) {
        auto* const knob = knobFor(limits, QString::fromUtf16(title), Formats::signedDecibels, look, this);
        Corvane::bind(
            *knob, [this, band = band] { return model.tone(band); },
            [this, band = band](double db) { model.setTone(band, db); });
        row->addWidget(knob, 1, Qt::AlignCenter);
    }
    return row;
}

QWidget* ToneView::presets() {
    auto* const group = new Kit::Group(QStringLiteral("Sons prontos"), this);
    auto* const row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addStretch();
    std::vector<Kit::Control*> buttons;
    for (const TonePreset& preset : TonePreset::all) {
        auto* const button =
            new Kit::PillButton(toQString(preset.name).toUpper(), Kit::PillButton::Size::regular, group);
        button->setUse(Kit::Button::Use::choice);
        button->setAccessibleName(toQString(preset.name));
        button->setIcon(toQString(preset.icon));
        button->action = [this, preset] {
            const History::Scope oneStep(model.history);
            for (const ToneBand band : toneBands)
                model.setTone(band, preset.gain(band));
        };
        Corvane::bind(
            *button,
            [this, name = preset.name] {
                const auto active = model.activePreset();
                return active && active->name == name;
            },
            [button](bool active) { button->setOn(active); });
        row->addWidget(button);
        buttons.push_back(button);
    }
    row->addStretch();
    (new Kit::Roving(0, Kit::Roving::Choice::stays, group))->setControls(std::move(buttons));
    return group;
}

QWidget* ToneView::volumePanel() {
    auto* const panel = new Kit::Panel(QStringLiteral("VOLUME"), this);
    auto* const columns = new QHBoxLayout;
    columns->setSpacing(28);
    columns->addWidget(inputColumn());
    columns->addWidget(outputColumn());
    panel->content().addLayout(columns);
    return panel;
}

QWidget* ToneView::inputColumn() {
    const ModuleSetting<GainValue> gain(model, ModuleKind::gain, K7Q::inputs.front());
    auto* const fader =
        faderFor(gain.limits("db"), QStringLiteral("Entrada"), Formats::decibels,
                 {.height = trackHeight, .levels = int(K7Q::inputs.size()), .labelsBelow = true}, this);
    Corvane::bind(
        *fader, [gain] { return gain.value().db; }, [this](double db) { model.setVolume(db); });
    Corvane::bind(
        *this, [this] { return levelsOf(model, K7Q::inputs); },
        [fader](const std::vector<float>& levels) { fader->setLevels(levels); });
    inputMute = muteButton(
        QStringLiteral("Entrada"), [gain] { return gain.value().mute; }, [this] { model.toggleMute(); },
        this);
    return column(fader, inputMute, this);
}

QWidget* ToneView::outputColumn() {
    auto* const meters = new Kit::OutputMeters(int(K7Q::outputs.size()), trackHeight, this);
    Corvane::bind(
        *meters, [this] { return levelsOf(model, K7Q::outputs); },
        [meters](const std::vector<float>& levels) { meters->setLevels(levels); });
    return column(meters,
                  muteButton(
                      QStringLiteral("Saídas"), [this] { return model.outputsMuted(); },
                      [this] { model.toggleOutputMute(); }, this),
                  this);
}

}  // namespace Corvane
