#include "ui/pages/technical/techchannelview.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/bindfield.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/delaybutton.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/pagelayout.hpp"
#include "ui/pages/shared/switchbutton.hpp"
#include "ui/pages/technical/channelresponse.hpp"
#include "ui/pages/technical/channelstrip.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/peqrow.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/timeknob.hpp"

#include <cmath>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr int gainWidth = 150;
constexpr int dynamicsWidth = 252;
constexpr int columnGap = 20;
constexpr int padding = Kit::EQGraph::bleed.top();  // of the panels; handles need it round the graph
constexpr int graphGap = 14;                        // between the graph and the table
constexpr int graphHeight = 230;
constexpr double stripHeight = 300;
constexpr int inputRowHeight = 38;  // an input has few bands and room for tall rows
constexpr double largeKnob = 82;
constexpr double smallKnob = 62;
constexpr double octavesPerNotch = 1.0 / 8;  // by which the wheel changes the Q of a band

Kit::Panel* densePanel(const QString& title, QWidget* parent) {
    auto* const panel = new Kit::Panel(title, parent);
    panel->layout()->setContentsMargins(padding, padding, padding, padding);
    panel->layout()->setSpacing(12);
    panel->content().setSpacing(8);
    return panel;
}

Kit::EQGraph::Handle handleOf(int band, const PeqValue& value) {
    const QString label = QString::number(band + 1);
    const QString state = value.bypass ? QStringLiteral(", desligada") : QString();
    return {.id = band,
            .label = label,
            .fc = static_cast<double>(value.fc),
            .gain = value.gain,
            .color = Theme::accent,
            .dimmed = value.bypass,
            .description = QStringLiteral("Banda %1: %2, %3, Q %4%5")
                               .arg(label, Formats::formatHz(value.fc), Formats::signedDecibels(value.gain),
                                    Formats::quality(value.q), state)};
}

}  // namespace

TechChannelView::TechChannelView(AppModel& model, std::string_view channel, QString title, QWidget* parent)
    : Surface(parent)
    , model(model)
    , channel(channel)
    , title(std::move(title)) {
    auto* const columns = new QHBoxLayout(this);
    columns->setContentsMargins(pageMargins);
    columns->setSpacing(columnGap);
    columns->addWidget(gainPanel());
    columns->addWidget(equaliserPanel(), 1);
    auto* const dynamics = new QVBoxLayout;
    dynamics->setSpacing(columnGap);
    dynamics->addWidget(isInput(channel) ? gatePanel() : compressorPanel(), 1);
    dynamics->addWidget(delayPanel());
    columns->addLayout(dynamics);
}

QWidget* TechChannelView::gainPanel() {
    auto* const panel = densePanel(QStringLiteral("GANHO"), this);
    panel->setFixedWidth(gainWidth);
    panel->content().addWidget(new ChannelStrip(model, channel, title, stripHeight, panel), 0,
                               Qt::AlignHCenter);
    panel->content().addStretch(1);
    return panel;
}

QWidget* TechChannelView::equaliserPanel() {
    auto* const panel = new Kit::Panel({}, this);
    panel->layout()->setContentsMargins(padding, 0, 0, padding);
    panel->content().setSpacing(graphGap - Kit::EQGraph::bleed.bottom());
    panel->content().addWidget(graph(panel));
    auto* const below = new QVBoxLayout;
    below->setContentsMargins(0, 0, padding, 0);
    below->setSpacing(14);
    QLayout* const buttons = equaliserButtons(panel);
    if (isInput(channel)) {
        below->addLayout(table(panel));
        below->addLayout(buttons);
        below->addStretch(1);
    } else {
        auto* const beside = new QHBoxLayout;
        beside->setSpacing(28);
        beside->addLayout(table(panel), 1);
        beside->addLayout(buttons);
        beside->setAlignment(buttons, Qt::AlignBottom);
        below->addLayout(beside, 1);
        below->addLayout(filterRows(panel));
    }
    panel->content().addLayout(below, 1);
    return panel;
}

Kit::EQGraph* TechChannelView::graph(QWidget* parent) {
    auto* const graph = new Kit::EQGraph(graphHeight, parent);
    graph->setAccessibleName(QStringLiteral("Equalizador, ") + title);
    graph->onDrag = [this](int band, double fc, double gain) {
        editBand(model, channel, band, [fc, gain](PeqValue& value) {
            value.fc = static_cast<std::uint32_t>(std::lround(fc));
            value.gain = static_cast<float>(gain);
        });
    };
    graph->onTurn = [this](int band, double notches) {
        editBand(model, channel, band, [notches](PeqValue& value) {
            value.q *= static_cast<float>(std::exp2(notches * octavesPerNotch));
        });
    };
    Corvane::bind(
        *graph, [this] { return filtersOf(model, channel); },
        [this, graph](const ChannelFilters& filters) {
            std::vector<Kit::EQGraph::Handle> handles;
            for (const PeqValue& band : filters.bands)
                handles.push_back(handleOf(static_cast<int>(handles.size()), band));
            graph->setCurves({{title, Theme::accent, responseOf(filters), true}});
            graph->setHandles(std::move(handles));
        });
    return graph;
}

QLayout* TechChannelView::table(QWidget* parent) {
    auto* const rows = new QVBoxLayout;
    rows->setSpacing(2);
    rows->addWidget(new PeqHeader(parent));
    rows->addSpacing(2);
    for (int band = 0; band < AppModel::bandsOf(channel); ++band) {
        auto* const row = new PeqRow(model, channel, band, parent);
        if (isInput(channel)) row->setFixedHeight(inputRowHeight);
        rows->addWidget(row, 1);
    }
    auto* const left = new QHBoxLayout;
    left->addLayout(rows, 1000);
    left->addStretch(1);
    return left;
}

QLayout* TechChannelView::equaliserButtons(QWidget* parent) {
    const auto button = [parent](const QString& text) {
        return new Kit::PillButton(text, Kit::PillButton::Size::compact, parent);
    };
    auto* const reset = button(QStringLiteral("EQ RESET"));
    auto* const bypass = button(QStringLiteral("EQ BYPASS"));
    reset->action = [this] { model.resetEq(channel); };
    bypass->action = [this] { model.setEqBypass(channel, !model.eqBypassed(channel)); };
    Corvane::bind(
        *bypass, [this] { return model.eqBypassed(channel); }, [bypass](bool on) { bypass->setOn(on); });
    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(reset);
    row->addWidget(bypass);
    if (isInput(channel)) row->addStretch();
    return row;
}

QLayout* TechChannelView::filterRows(QWidget* parent) {
    auto* const row = new QHBoxLayout;
    row->addWidget(new FilterRow(model, ModuleKind::hpf, channel, {}, parent));
    row->addStretch();
    row->addWidget(new FilterRow(model, ModuleKind::lpf, channel, {}, parent));
    return row;
}

QWidget* TechChannelView::compressorPanel() {
    auto* const panel = densePanel(QStringLiteral("COMPRESSOR"), this);
    panel->setFixedWidth(dynamicsWidth);
    addKnobs(*panel, ModuleKind::compressor, Formats::signedDecibels);
    return panel;
}

QWidget* TechChannelView::gatePanel() {
    auto* const panel = densePanel(QStringLiteral("NOISE GATE"), this);
    panel->setFixedWidth(dynamicsWidth);
    const ModuleSetting<bool> bypass(model, ModuleKind::gateBypass, channel);
    panel->setTrailing(switchButton(
        {QStringLiteral("LIGADO"), QStringLiteral("BYPASS")}, [bypass] { return !bypass.value(); },
        [bypass] { bypass.edit([](bool& value) { value = !value; }); }, panel));
    addKnobs(*panel, ModuleKind::gate, Formats::wholeDecibels);
    return panel;
}

void TechChannelView::addKnobs(Kit::Panel& panel, ModuleKind kind, const Kit::ValueControl::Format& format) {
    const ModuleSetting<DynamicsValue> setting(model, kind, channel);
    auto* const threshold = knobFor(setting.limits("threshold"), QStringLiteral("Threshold"), format,
                                    {.size = largeKnob}, &panel);
    bindField(*threshold, setting, &DynamicsValue::threshold);
    auto* const times = new QHBoxLayout;
    for (const auto& [name, field] : {std::pair(QStringLiteral("Attack"), &DynamicsValue::attack),
                                      std::pair(QStringLiteral("Release"), &DynamicsValue::release)}) {
        times->addWidget(timeKnobFor(name, smallKnob, setting, field, &panel), 1, Qt::AlignHCenter);
    }
    panel.content().addStretch(1);
    panel.content().addWidget(threshold, 0, Qt::AlignHCenter);
    panel.content().addLayout(times);
    panel.content().addStretch(1);
}

QWidget* TechChannelView::delayPanel() {
    auto* const panel = densePanel(QStringLiteral("DELAY"), this);
    panel->setFixedWidth(dynamicsWidth);
    const ModuleSetting<DelayValue> delay(model, ModuleKind::delay, channel);
    panel->setTrailing(delayButton(delay, panel));
    auto* const knob =
        knobFor(delay.limits("ms"), Formats::distance(0), Formats::delay, {.size = largeKnob}, panel);
    knob->setAccessibleName(QStringLiteral("Delay"));
    bindField(*knob, delay, &DelayValue::ms);
    Corvane::bind(
        *this, [delay] { return delay.value().ms; },
        [knob](float ms) { knob->setTitle(Formats::distance(ms)); });
    panel->content().addWidget(knob, 0, Qt::AlignHCenter);
    return panel;
}

}  // namespace Corvane
