#include "ui/pages/simple/dynamicsview.hpp"

#include "ui/pages/shared/pagelayout.hpp"
#include "ui/pages/shared/switchbutton.hpp"
#include "ui/pages/simple/outputpicker.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/meterbar.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/timeknob.hpp"
#include "ui/kit/well.hpp"
#include "ui/pages/shared/bind.hpp"

#include <algorithm>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double largeKnob = 150;
constexpr double smallKnob = 96;
constexpr int rowGap = 24;

// A ratio up to this one is no compression.
constexpr float restingRatio = 1.01F;
constexpr float usualRatio = 4;

// Shown where the board has reported something else than settings of this kind.
constexpr DynamicsValue noCompressor{.threshold = 22, .ratio = 1, .hold = 0, .attack = 45, .release = 724};
constexpr LimiterValue noLimiter{.threshold = 24, .ratio = 0, .hold = 0, .release = 724};

QHBoxLayout* rowOf(std::initializer_list<QWidget*> controls) {
    auto* const row = new QHBoxLayout;
    for (QWidget* const control : controls)
        row->addWidget(control, 1, Qt::AlignCenter);
    return row;
}

// A knob over a field of a record.
template <class Record, class Value>
Kit::Knob* knobFor(Kit::Knob* knob, Value Record::*field, std::function<Record()> read,
                   std::function<void(const std::function<void(Record&)>&)> edit) {
    Corvane::bind(
        *knob, [read, field] { return read().*field; },
        [edit, field](double value) {
            edit([field, value](Record& record) { record.*field = static_cast<Value>(value); });
        });
    return knob;
}

// The same for a time.
template <class Record>
Kit::Knob* timeKnobFor(const QString& title, std::uint32_t Record::*field, std::function<Record()> read,
                       std::function<void(const std::function<void(Record&)>&)> edit, QWidget* parent) {
    const auto set = [edit, field](std::uint32_t ms) {
        edit([field, ms](Record& record) { record.*field = ms; });
    };
    auto* const knob = Kit::timeKnob(title, read().*field, smallKnob, set, parent);
    Corvane::bind(
        static_cast<QObject&>(*knob), [read, field] { return read().*field; },
        [knob](std::uint32_t ms) { knob->setTime(ms); });
    return knob;
}

}  // namespace

DynamicsView::DynamicsView(AppModel& model, QWidget* parent)
    : Surface(parent)
    , model(model) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(pageMargins);
    rows->setSpacing(18);
    rows->addWidget(new OutputPicker(model, this));
    auto* const panels = new QHBoxLayout;
    panels->setSpacing(panelGap);
    panels->addWidget(compressorPanel(), 1);
    panels->addWidget(limiterPanel(), 1);
    rows->addLayout(panels, 1);
}

DynamicsValue DynamicsView::compressor() const {
    return model.valueAs<DynamicsValue>(ModuleKind::compressor, model.outputs().front())
        .value_or(noCompressor);
}

LimiterValue DynamicsView::limiter() const {
    return model.valueAs<LimiterValue>(ModuleKind::limiter, model.outputs().front()).value_or(noLimiter);
}

bool DynamicsView::limiterBypassed() const {
    return model.valueAs<bool>(ModuleKind::limiterBypass, model.outputs().front()).value_or(true);
}

void DynamicsView::toggleCompressor() {
    const float ratio = compressor().ratio > restingRatio ? 1 : usualRatio;
    model.editCompressor([ratio](DynamicsValue& value) { value.ratio = ratio; });
}

void DynamicsView::toggleLimiter() {
    const bool bypass = !limiterBypassed();
    for (const std::string_view output : model.outputs())
        model.set(K7Q::index(ModuleKind::limiterBypass, output, 0), ModuleValue{bypass});
}

QWidget* DynamicsView::compressorPanel() {
    auto* const panel = new Kit::Panel(QStringLiteral("COMPRESSOR"), this);
    panel->setTrailing(switchButton(
        {QStringLiteral("LIGADO"), QStringLiteral("DESLIGADO")},
        [this] { return compressor().ratio > restingRatio; }, [this] { toggleCompressor(); }, panel));

    const std::function<DynamicsValue()> read = [this] { return compressor(); };
    const auto edit = [this](const AppModel::CompressorChange& change) { model.editCompressor(change); };
    using Value = DynamicsValue;
    auto* const threshold = new Kit::Knob(
        QStringLiteral("Threshold"), {-20, 22}, 22, 0.5, Formats::signedDecibels,
        {.size = largeKnob, .minLabel = QStringLiteral("-20"), .maxLabel = QStringLiteral("+22")}, panel);
    auto* const ratio = new Kit::Knob(
        QStringLiteral("Ratio"), {1, 20}, 1, 0.1, Formats::ratio,
        {.size = largeKnob, .minLabel = QStringLiteral("1"), .maxLabel = QStringLiteral("20")}, panel);
    auto* const attack = timeKnobFor<Value>(QStringLiteral("Attack"), &Value::attack, read, edit, panel);
    auto* const release = timeKnobFor<Value>(QStringLiteral("Release"), &Value::release, read, edit, panel);
    auto* const knee = new Kit::Knob(QStringLiteral("Knee"), {0, 30}, 0, 1, Formats::wholeDecibels,
                                     {.size = smallKnob}, panel);
    panel->content().addStretch(1);
    panel->content().addLayout(rowOf({knobFor<Value>(threshold, &Value::threshold, read, edit),
                                      knobFor<Value>(ratio, &Value::ratio, read, edit)}));
    panel->content().addStretch(1);
    panel->content().addLayout(rowOf({attack, release, knobFor<Value>(knee, &Value::knee, read, edit)}));
    panel->content().addStretch(1);
    return panel;
}

QWidget* DynamicsView::limiterPanel() {
    auto* const panel = new Kit::Panel(QStringLiteral("LIMITER"), this);
    panel->setTrailing(switchButton(
        {QStringLiteral("LIGADO"), QStringLiteral("BYPASS")}, [this] { return !limiterBypassed(); },
        [this] { toggleLimiter(); }, panel));

    const std::function<LimiterValue()> read = [this] { return limiter(); };
    const auto edit = [this](const AppModel::LimiterChange& change) { model.editLimiter(change); };
    using Value = LimiterValue;
    auto* const threshold = new Kit::Knob(
        QStringLiteral("Threshold"), {-20, 24}, 24, 0.5, Formats::signedDecibels,
        {.size = largeKnob, .minLabel = QStringLiteral("-20"), .maxLabel = QStringLiteral("+24")}, panel);
    auto* const release = timeKnobFor<Value>(QStringLiteral("Release"), &Value::release, read, edit, panel);
    auto* const knee = new Kit::Knob(QStringLiteral("Knee"), {0, 30}, 0, 1, Formats::wholeDecibels,
                                     {.size = smallKnob}, panel);
    auto* const knobs = new QVBoxLayout;
    knobs->addStretch(1);
    knobs->addLayout(rowOf({knobFor<Value>(threshold, &Value::threshold, read, edit)}));
    knobs->addStretch(1);
    knobs->addLayout(rowOf({release, knobFor<Value>(knee, &Value::knee, read, edit)}));
    knobs->addStretch(1);
    auto* const columns = new QHBoxLayout;
    columns->addLayout(knobs, 1);
    columns->addWidget(levelBlock(), 0, Qt::AlignCenter);
    columns->addSpacing(24);
    panel->content().addLayout(columns, 1);
    return panel;
}

QWidget* DynamicsView::levelBlock() {
    constexpr int barHeight = 150;
    auto* const block = new QWidget(this);
    auto* const rows = new QVBoxLayout(block);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(10);
    auto* const title = new Kit::Caption(QStringLiteral("NÍVEL"), Theme::font(11, QFont::DemiBold, 2),
                                         Theme::secondary, block);
    rows->addWidget(title, 0, Qt::AlignHCenter);
    auto* const well = new Kit::Well(14, block);
    auto* const columns = new QHBoxLayout(well);
    constexpr int glow = Kit::MeterBar::glow;
    columns->setContentsMargins(14 - glow, 12 - glow, 14 - glow, 12 - glow);
    columns->setSpacing(0);
    for (const std::string_view output : K7Q::outputs) {
        auto* const bar = new Kit::MeterBar(5, well);
        bar->setAccessibleName(QString::fromLatin1(output.data(), qsizetype(output.size())));
        bar->setFixedHeight(barHeight + 2 * glow);
        columns->addWidget(bar);
        Corvane::bind(
            *bar, [this, output] { return model.meter(output); },
            [bar](float level) { bar->setLevel(level); });
        Corvane::bind(
            *bar, [this, output] { return std::ranges::count(model.outputs(), output) > 0; },
            [bar](bool chosen) { bar->setVisible(chosen); });
    }
    rows->addWidget(well, 0, Qt::AlignHCenter);
    return block;
}

}  // namespace Corvane
