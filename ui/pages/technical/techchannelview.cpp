#include "ui/pages/technical/techchannelview.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/bindfield.hpp"
#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/delaybutton.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/switchbutton.hpp"
#include "ui/pages/technical/channelresponse.hpp"
#include "ui/pages/technical/channelstrip.hpp"
#include "ui/pages/technical/eqclipboard.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/peqrow.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/roving.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/timeknob.hpp"

#include <QKeyEvent>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr QMargins bleed = Kit::EQGraph::bleed;

constexpr int gainWidth = 150;
constexpr int dynamicsWidth = 272;
constexpr int titleRow = 36;  // height of a compact button
constexpr int padding = 26;   // of the panels

// An output has ten rows and its filters under the graph. With them the height of the usual window has
// no room for the padding of other panels, above and below, and for the height of other menus.
constexpr int outputPadding = 14;
constexpr int lowMenu = 24;
constexpr int usualMenu = 30;
constexpr int forMenus = (usualMenu - lowMenu) * 11;  // what a window is higher in which all fit

constexpr int graphHeight = 230;
constexpr int leastGraphHeight = 150;  // in the lowest window
constexpr int graphFirst = 1000;       // stretch: what is left goes to the graph before the rows
constexpr double stripHeight = 300;
constexpr double largeKnob = 82;
constexpr double smallKnob = 62;
constexpr double octavesPerNotch = 1.0 / 8;  // by which the wheel changes the Q of a band

Kit::Panel* titledPanel(const QString& title, int width, QWidget* parent) {
    auto* const panel = new Kit::Panel(title, parent);
    panel->setFixedWidth(width);
    panel->reserveTitleRow(titleRow);
    return panel;
}

Kit::EQGraph::Handle handleOf(int band, const PeqValue& value) {
    const QString label = QString::number(band + 1);
    const QString name = bandName(band);
    const QString state = value.bypass ? QStringLiteral(", desligada") : QString();
    return {.id = band,
            .label = label,
            .fc = static_cast<double>(value.fc),
            .gain = value.gain,
            .color = Theme::accent,
            .dimmed = value.bypass,
            .name = name,
            .description = QStringLiteral("%1: %2%3").arg(name, spokenBandText(value), state),
            .readOut = bandText(value)};
}

}  // namespace

TechChannelView::TechChannelView(AppModel& model, std::string_view channel, QString title, QWidget* parent)
    : PageView(QBoxLayout::LeftToRight, parent)
    , model(model)
    , channel(channel)
    , title(std::move(title)) {
    panels().addWidget(gainPanel());
    panels().addWidget(equaliserPanel(), 1);
    auto* const dynamics = new QVBoxLayout;
    dynamics->setSpacing(panelGap);
    dynamics->addWidget(isInput(channel) ? gatePanel() : compressorPanel(), 1);
    dynamics->addWidget(delayPanel());
    panels().addLayout(dynamics);
}

QWidget* TechChannelView::gainPanel() {
    auto* const panel = titledPanel(QStringLiteral("GANHO"), gainWidth, this);
    panel->content().addStretch(1);
    strip = new ChannelStrip(model, channel, title, stripHeight, panel);
    panel->content().addWidget(strip, 0, Qt::AlignHCenter);
    panel->content().addStretch(1);
    return panel;
}

QWidget* TechChannelView::equaliserPanel() {
    const int edge = isInput(channel) ? padding : outputPadding;  // above and below
    auto* const panel = new Kit::Panel({}, this);
    Kit::setContext(*panel, {nameOf(channel)});
    panel->layout()->setContentsMargins(padding, edge, padding, edge);
    panel->content().setSpacing(6);
    buildGraph(panel);
    panel->content().addWidget(graph, graphFirst);
    auto* const below = new QVBoxLayout;
    below->setSpacing(8);
    below->addLayout(table(panel), 1);
    below->addLayout(equaliserButtons(panel));
    if (!isInput(channel)) below->addLayout(filterRows(panel));
    panel->content().addLayout(below, 1);
    return panel;
}

void TechChannelView::buildGraph(QWidget* parent) {
    graph = new Kit::EQGraph(graphHeight, parent);
    graph->setMinimumHeight(leastGraphHeight + bleed.top() + bleed.bottom());
    graph->setAccessibleName(QStringLiteral("Equalizador"));
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
    graph->curveOf = [this](int band) { return responseOf(filtersOf(model, channel), band); };
    Corvane::bind(
        *graph, [this] { return filtersOf(model, channel); },
        [this](const ChannelFilters& filters) {
            std::vector<Kit::EQGraph::Handle> handles;
            for (const PeqValue& band : filters.bands)
                handles.push_back(handleOf(static_cast<int>(handles.size()), band));
            graph->setCurves({{title, Theme::accent, responseOf(filters), true}});
            graph->setHandles(std::move(handles));
        });
}

void TechChannelView::spend(int height) {
    strip->setMinimumHeight(strip->sizeHint().height() + height);
    const bool menusFit = isInput(channel) || height >= forMenus;
    for (Kit::MenuButton* const menu : menus)
        menu->setFixedHeight(menusFit ? usualMenu : lowMenu);
    const int toGraph = isInput(channel) || !menusFit ? height : height - forMenus;
    graph->setMaximumHeight(graphHeight + toGraph + bleed.top() + bleed.bottom());
}

QLayout* TechChannelView::table(QWidget* parent) {
    std::vector<PeqRow*> rows;
    auto* const lines = new QVBoxLayout;
    lines->setSpacing(2);
    lines->addWidget(new PeqHeader(parent));
    for (int band = 0; band < AppModel::bandsOf(channel); ++band) {
        auto* const row = new PeqRow(model, channel, band, parent);
        menus.push_back(&row->menu());
        lines->addWidget(row, 1);
        rows.push_back(row);
    }
    linkToGraph(rows);
    std::vector<Kit::Control*> cells;
    for (const PeqRow* const row : rows)
        for (Kit::Control* const cell : row->cells())
            cells.push_back(cell);
    const auto perRow = static_cast<int>(cells.size() / rows.size());
    (new Kit::Roving(perRow, Kit::Roving::Choice::stays, parent))->setControls(std::move(cells));
    return lines;
}

void TechChannelView::linkToGraph(const std::vector<PeqRow*>& rows) {
    const auto show = [&rows](void (PeqRow::*set)(bool)) {
        return [rows, set](std::optional<int> shown) {
            for (int band = 0; PeqRow* const row : rows)
                (row->*set)(band++ == shown);
        };
    };
    graph->onReturn = [rows](int band) { rows.at(static_cast<std::size_t>(band))->edit(); };
    graph->onSelect = show(&PeqRow::setSelected);
    graph->onHover = show(&PeqRow::setMarked);
    for (int band = 0; PeqRow* const row : rows) {
        row->onSelect = [this, band] {
            graph->select(band);
            graph->setFocus(Qt::MouseFocusReason);
        };
        row->onHover = [this, row, band](bool isOver) {
            row->setMarked(isOver);
            graph->mark(isOver ? std::optional(band) : std::nullopt);
        };
        ++band;
    }
}

void TechChannelView::keyPressEvent(QKeyEvent* event) {
    const bool withShift = event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
    const bool copies = event->matches(QKeySequence::Copy);
    const bool pastes = event->matches(QKeySequence::Paste);
    const bool copiesAll = withShift && event->key() == Qt::Key_C;
    const bool pastesAll = withShift && event->key() == Qt::Key_V;
    if (!graph->hasFocus() || !(copies || pastes || copiesAll || pastesAll))
        return Surface::keyPressEvent(event);
    if (copies || copiesAll) return copy(copiesAll);
    pastesAll ? pasteAll() : pasteBand();
}

void TechChannelView::copy(bool all) {
    const std::vector<PeqValue> bands = filtersOf(model, channel).bands;
    if (all) return EQClipboard::copy(EQClipboard::Content::equaliser, bands);
    if (const auto band = graph->selection())
        EQClipboard::copy(EQClipboard::Content::band, {bands.at(static_cast<std::size_t>(*band))});
}

void TechChannelView::pasteBand() {
    const auto band = graph->selection();
    if (!band) return;
    const std::vector<PeqValue> copied = EQClipboard::copied(EQClipboard::Content::band);
    if (copied.empty()) return model.warn("Nenhuma banda copiada: selecione uma e tecle Ctrl+C");
    editBand(model, channel, *band, [&copied](PeqValue& value) { value = copied.front(); });
}

void TechChannelView::pasteAll() {
    const std::vector<PeqValue> copied = EQClipboard::copied(EQClipboard::Content::equaliser);
    if (copied.empty()) return model.warn("Nenhum equalizador copiado: tecle Ctrl+Shift+C no gráfico");
    const History::Scope step(model.history);
    const std::size_t written = std::min(copied.size(), static_cast<std::size_t>(AppModel::bandsOf(channel)));
    for (std::size_t band = 0; band < written; ++band)
        editBand(model, channel, static_cast<int>(band),
                 [&copied, band](PeqValue& value) { value = copied[band]; });
    if (written == copied.size()) return;
    const QString left =
        written + 1 == copied.size()
            ? QStringLiteral("A banda %1 ficou de fora").arg(copied.size())
            : QStringLiteral("As bandas %1 a %2 ficaram de fora").arg(written + 1).arg(copied.size());
    model.warn(QStringLiteral("%1: %2 tem %3 bandas").arg(left, title).arg(written).toStdString());
}

QLayout* TechChannelView::equaliserButtons(QWidget* parent) {
    const auto button = [parent](const QString& text) {
        return new Kit::PillButton(text, Kit::PillButton::Size::compact, parent);
    };
    auto* const reset = button(QStringLiteral("EQ RESET"));
    auto* const bypass = button(QStringLiteral("EQ BYPASS"));
    bypass->setUse(Kit::Button::Use::toggle);
    reset->action = [this] { model.resetEq(channel); };
    bypass->action = [this] { model.setEqBypass(channel, !model.eqBypassed(channel)); };
    Corvane::bind(
        *bypass, [this] { return model.eqBypassed(channel); }, [bypass](bool on) { bypass->setOn(on); });
    auto* const row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(reset);
    row->addWidget(bypass);
    (new Kit::Roving(0, Kit::Roving::Choice::stays, parent))->setControls({reset, bypass});
    row->addStretch();
    return row;
}

QLayout* TechChannelView::filterRows(QWidget* parent) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(12);
    for (const ModuleKind kind : {ModuleKind::hpf, ModuleKind::lpf}) {
        auto* const filter = new FilterRow(model, kind, channel, {}, parent);
        menus.push_back(&filter->menu());
        row->addWidget(filter, 1);
    }
    return row;
}

QWidget* TechChannelView::compressorPanel() {
    auto* const panel = titledPanel(QStringLiteral("COMPRESSOR"), dynamicsWidth, this);
    Kit::setContext(*panel, {nameOf(channel), QStringLiteral("Compressor")});
    addKnobs(*panel, ModuleKind::compressor, Formats::signedDecibels);
    return panel;
}

QWidget* TechChannelView::gatePanel() {
    auto* const panel = titledPanel(QStringLiteral("NOISE GATE"), dynamicsWidth, this);
    const ModuleSetting<bool> bypass(model, ModuleKind::gateBypass, channel);
    Kit::setContext(*panel, {nameOf(channel), QStringLiteral("Noise gate")});
    panel->setTrailing(switchButton(
        QStringLiteral("Noise gate"), {QStringLiteral("LIGADO"), QStringLiteral("BYPASS")},
        [bypass] { return !bypass.value(); }, [bypass] { bypass.edit([](bool& value) { value = !value; }); },
        panel));
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
    auto* const panel = titledPanel(QStringLiteral("DELAY"), dynamicsWidth, this);
    const ModuleSetting<DelayValue> delay(model, ModuleKind::delay, channel);
    panel->setTrailing(delayButton(channel, delay, panel));
    auto* const knob =
        knobFor(delay.limits("ms"), Formats::distance(0), Formats::delay, {.size = largeKnob}, panel);
    knob->setAccessibleName(nameOf(channel) + QStringLiteral(", tempo do delay"));
    knob->spokenFormat = Formats::spokenDelay;
    bindField(*knob, delay, &DelayValue::ms);
    Corvane::bind(
        *this, [delay] { return delay.value().ms; },
        [knob](float ms) { knob->setTitle(Formats::distance(ms)); });
    panel->content().addWidget(knob, 0, Qt::AlignHCenter);
    return panel;
}

}  // namespace Corvane
