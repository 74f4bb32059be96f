#include "ui/pages/simple/dynamicsview.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/bindfield.hpp"
#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/switchbutton.hpp"
#include "ui/pages/simple/outputpicker.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/meterbars.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/timeknob.hpp"
#include "ui/kit/well.hpp"

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double largeKnob = 150;
constexpr double smallKnob = 96;

// Ratios of a compressor that is switched off and on, and the highest that is shown as off.
constexpr float offRatio = 1;
constexpr float onRatio = 4;
constexpr float highestOffRatio = 1.01F;

QHBoxLayout* rowOf(std::initializer_list<QWidget*> controls) {
    auto* const row = new QHBoxLayout;
    for (QWidget* const control : controls)
        row->addWidget(control, 1, Qt::AlignCenter);
    return row;
}

// The buttons of both panels are as wide as the widest.
Kit::PillButton* equallyWide(Kit::PillButton* button) {
    button->reserveFor({QStringLiteral("LIGADO"), QStringLiteral("DESLIGADO"), QStringLiteral("BYPASS")});
    return button;
}

// The setting of the first chosen output; an edit goes to all chosen outputs.
template <class Value>
class OutputsSetting {
public:
    using EditAll = void (AppModel::*)(const std::function<void(Value&)>& change);

    OutputsSetting(AppModel& model, ModuleKind kind, EditAll editAll)
        : model(&model)
        , kind(kind)
        , editAll(editAll) {}

    Value value() const { return ModuleSetting<Value>(*model, kind, model->outputs().front()).value(); }
    void edit(const std::function<void(Value&)>& change) const { (model->*editAll)(change); }
    Limits limits(std::string_view field) const { return limitsOf(kind, field, K7Q::outputs.front()); }

private:
    AppModel* model;
    ModuleKind kind;
    EditAll editAll;
};

template <class Value>
Kit::Knob* thresholdKnob(const OutputsSetting<Value>& setting, QWidget* parent) {
    const Limits limits = setting.limits("threshold");
    auto* const knob = knobFor(limits, QStringLiteral("Threshold"), Formats::signedDecibels,
                               labelledKnob(largeKnob, limits), parent);
    bindField(*knob, setting, &Value::threshold);
    return knob;
}

Kit::Knob* ratioKnob(const OutputsSetting<DynamicsValue>& setting, QWidget* parent) {
    const Limits limits = setting.limits("ratio");
    auto* const knob =
        knobFor(limits, QStringLiteral("Ratio"), Formats::ratio, labelledKnob(largeKnob, limits), parent);
    bindField(*knob, setting, &DynamicsValue::ratio);
    return knob;
}

template <class Value>
Kit::Knob* kneeKnob(const OutputsSetting<Value>& setting, QWidget* parent) {
    auto* const knob = knobFor(setting.limits("knee"), QStringLiteral("Knee"), Formats::wholeDecibels,
                               {.size = smallKnob}, parent);
    bindField(*knob, setting, &Value::knee);
    return knob;
}

}  // namespace

DynamicsView::DynamicsView(AppModel& model, QWidget* parent)
    : PageView(QBoxLayout::TopToBottom, parent)
    , model(model) {
    panels().setSpacing(18);
    panels().addWidget(new OutputPicker(model, this));
    auto* const pair = new QHBoxLayout;
    pair->setSpacing(panelGap);
    pair->addWidget(compressorPanel(), 1);
    pair->addWidget(limiterPanel(), 1);
    panels().addLayout(pair, 1);
}

QWidget* DynamicsView::compressorPanel() {
    const OutputsSetting<DynamicsValue> compressor(model, ModuleKind::compressor, &AppModel::editCompressor);
    const auto isOn = [compressor] { return compressor.value().ratio > highestOffRatio; };
    const auto toggle = [compressor, isOn] {
        compressor.edit([ratio = isOn() ? offRatio : onRatio](DynamicsValue& value) { value.ratio = ratio; });
    };
    auto* const panel = new Kit::Panel(QStringLiteral("COMPRESSOR"), this);
    Kit::setContext(*panel, {QStringLiteral("Compressor")});
    panel->setTrailing(equallyWide(switchButton(QStringLiteral("Compressor"),
                                                {QStringLiteral("LIGADO"), QStringLiteral("DESLIGADO")}, isOn,
                                                toggle, panel)));
    const auto time = [&](const QString& title, std::uint32_t DynamicsValue::*field) {
        return timeKnobFor(title, smallKnob, compressor, field, panel);
    };
    panel->content().addStretch(1);
    panel->content().addLayout(rowOf({thresholdKnob(compressor, panel), ratioKnob(compressor, panel)}));
    panel->content().addStretch(1);
    panel->content().addLayout(
        rowOf({time(QStringLiteral("Attack"), &DynamicsValue::attack),
               time(QStringLiteral("Release"), &DynamicsValue::release), kneeKnob(compressor, panel)}));
    panel->content().addStretch(1);
    return panel;
}

QWidget* DynamicsView::limiterPanel() {
    const OutputsSetting<LimiterValue> limiter(model, ModuleKind::limiter, &AppModel::editLimiter);
    auto* const panel = new Kit::Panel(QStringLiteral("LIMITER"), this);
    Kit::setContext(*panel, {QStringLiteral("Limiter")});
    panel->setTrailing(equallyWide(switchButton(
        QStringLiteral("Limiter"), {QStringLiteral("LIGADO"), QStringLiteral("BYPASS")},
        [this] { return !limiterBypassed(); }, [this] { toggleLimiter(); }, panel)));
    panel->content().addStretch(1);
    QHBoxLayout* const large = rowOf({thresholdKnob(limiter, panel)});
    large->addWidget(levelBlock(panel), 1, Qt::AlignHCenter);
    panel->content().addLayout(large);
    panel->content().addStretch(1);
    panel->content().addLayout(
        rowOf({timeKnobFor(QStringLiteral("Release"), smallKnob, limiter, &LimiterValue::release, panel),
               kneeKnob(limiter, panel)}));
    panel->content().addStretch(1);
    return panel;
}

bool DynamicsView::limiterBypassed() const {
    return ModuleSetting<bool>(model, ModuleKind::limiterBypass, model.outputs().front()).value();
}

void DynamicsView::toggleLimiter() {
    const bool bypass = !limiterBypassed();
    for (const std::string_view output : model.outputs())
        model.set(K7Q::index(ModuleKind::limiterBypass, output, 0), ModuleValue{bypass});
}

bool DynamicsView::isChosen(std::string_view output) const {
    return std::ranges::count(model.outputs(), output) > 0;
}

// It fills the height of the row, so that its title is on the line of the captions of the knobs.
QWidget* DynamicsView::levelBlock(QWidget* parent) {
    constexpr int barHeight = 150;
    constexpr int barWidth = 5;
    constexpr int barPitch = 15;
    static constexpr float silence = -std::numeric_limits<float>::infinity();
    auto* const block = new QWidget(parent);
    auto* const rows = new QVBoxLayout(block);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    auto* const well = new Kit::Well(14, block);
    QStringList names;
    for (const std::string_view output : K7Q::outputs)
        names << QStringLiteral("Nível, ") + nameOf(output);
    constexpr int glow = Kit::MeterBars::glow;
    auto* const bars = new Kit::MeterBars(
        names, {barWidth, barPitch}, [well](QPainter& painter) { well->draw(painter); }, well);
    bars->setMinimumHeight(barHeight + 2 * glow);
    auto* const inside = new QHBoxLayout(well);
    inside->setContentsMargins(14 - glow, 12 - glow, 14 - glow, 12 - glow);
    inside->addWidget(bars);
    Corvane::bind(
        *bars,
        [this] {
            std::vector<float> levels;
            for (const std::string_view output : K7Q::outputs)
                levels.push_back(isChosen(output) ? model.meter(output) : silence);
            return levels;
        },
        [bars](const std::vector<float>& levels) { bars->setLevels(levels); });
    auto* const title = new Kit::Caption(QStringLiteral("NÍVEL"), Theme::font(11, QFont::DemiBold, 2),
                                         Theme::secondary, block);
    rows->addWidget(well, 1, Qt::AlignHCenter);
    rows->addSpacing(6);
    rows->addWidget(title, 0, Qt::AlignHCenter);
    rows->addSpacing(5);
    return block;
}

}  // namespace Corvane
