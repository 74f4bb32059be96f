#include "ui/pages/technical/techcrossoverview.hpp"

#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/technical/channelresponse.hpp"
#include "ui/pages/technical/channelstrip.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/outputcolors.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/pages/shared/bind.hpp"

#include <QPainter>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr int graphHeight = 240;
constexpr int leastGraphHeight = 190;  // in the lowest window
constexpr QMargins bleed = Kit::EQGraph::bleed;
constexpr int padding = 26;  // left and right in the panels

// Above and below, the height of the window has no room for that: in all blocks, and in the graph's panel.
constexpr int topOfBlock = 14;
constexpr int footOfBlock = 16;
constexpr int edgeOfGraph = 16;

constexpr int gap = 18;
constexpr int outputs = static_cast<int>(K7Q::outputs.size());

std::string_view channelOf(int output) { return K7Q::outputs.at(static_cast<std::size_t>(output)); }
QColor colorOf(int output) { return outputColors.at(static_cast<std::size_t>(output)); }
QString titleOf(int output) { return QStringLiteral("SAÍDA %1").arg(output + 1); }

// "Saída 1: HPF 80 Hz Butterworth 24 dB, LPF desligado".
QString description(AppModel& model) {
    QStringList parts;
    for (const std::string_view channel : K7Q::outputs) {
        QStringList filters;
        for (const ModuleKind kind : {ModuleKind::hpf, ModuleKind::lpf}) {
            const ModuleSetting<FilterValue> filter(model, kind, channel);
            filters << filterText(kind, filter.value());
        }
        parts << nameOf(channel) + QStringLiteral(": ") + filters.join(QStringLiteral(", "));
    }
    return parts.join(QStringLiteral("; "));
}

constexpr int glow = static_cast<int>(Kit::lampGlow);  // of a dot, on each side
constexpr int dotSize = static_cast<int>(Kit::lampSize) + 2 * glow;

class Dot final : public QWidget {
public:
    Dot(const QColor& color, QWidget* parent)
        : QWidget(parent)
        , color(color) {
        setFixedSize(dotSize, dotSize);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(double(width()) / dotSize, double(height()) / dotSize);
        Kit::drawLamp(painter, {0, 0, dotSize, dotSize}, color, true);
    }

private:
    const QColor color;
};

}  // namespace

TechCrossoverView::TechCrossoverView(AppModel& model, QWidget* parent)
    : PageView(QBoxLayout::TopToBottom, parent)
    , model(model) {
    panels().setSpacing(gap);
    panels().addWidget(graphPanel(), 1000);
    for (int output = 0; output < outputs; output += 2) {
        auto* const pair = new QHBoxLayout;
        pair->setSpacing(gap);
        pair->addWidget(block(output));
        pair->addWidget(block(output + 1));
        panels().addLayout(pair, 1);
    }
}

QWidget* TechCrossoverView::graphPanel() {
    auto* const panel = new Kit::Panel({}, this);
    panel->layout()->setContentsMargins(padding, edgeOfGraph, padding, edgeOfGraph);
    graph = new Kit::EQGraph(graphHeight, panel);
    graph->setMinimumHeight(leastGraphHeight + bleed.top() + bleed.bottom());
    graph->setAccessibleName(QStringLiteral("Resposta das saídas"));
    Corvane::bind(
        *graph, [this] { return description(model); },
        [this](const QString& text) { graph->setAccessibleDescription(text); });
    panel->content().addWidget(graph);
    for (int output = 0; output < outputs; ++output)
        Corvane::bind(
            *graph, [this, output] { return filtersOf(model, channelOf(output)); },
            [this, output](const ChannelFilters& filters) {
                std::vector<Kit::EQGraph::Curve> curves = graph->shownCurves();
                curves.resize(outputs);
                curves.at(static_cast<std::size_t>(output)) = {titleOf(output), colorOf(output),
                                                               responseOf(filters), false};
                graph->setCurves(std::move(curves));
            });
    return panel;
}

void TechCrossoverView::spend(int height) {
    graph->setMaximumHeight(graphHeight + height + bleed.top() + bleed.bottom());
    graph->parentWidget()->setMaximumHeight(graph->maximumHeight() + 2 * edgeOfGraph);
}

QWidget* TechCrossoverView::block(int output) {
    auto* const panel = new Kit::Panel({}, this);
    panel->layout()->setContentsMargins(padding - glow, topOfBlock, padding, footOfBlock);
    panel->content().setSpacing(8);
    auto* const header = new QHBoxLayout;
    header->setSpacing(8);
    header->addWidget(new Dot(colorOf(output), panel));
    header->addWidget(
        new Kit::Caption(titleOf(output), Theme::font(12, QFont::Normal, 2), Theme::text, panel), 1);
    for (Kit::PillButton* const button :
         {muteButton(model, channelOf(output), nameOf(channelOf(output)), panel),
          polarityButton(model, channelOf(output), nameOf(channelOf(output)), panel)})
        header->addWidget(button);
    panel->content().addLayout(header);
    auto* const filters = new QVBoxLayout;
    filters->setContentsMargins(glow, 0, 0, 0);
    filters->setSpacing(8);
    for (const ModuleKind kind : {ModuleKind::hpf, ModuleKind::lpf})
        filters->addWidget(new FilterRow(model, kind, channelOf(output), colorOf(output), panel));
    panel->content().addStretch(1);
    panel->content().addLayout(filters);
    panel->content().addStretch(1);
    return panel;
}

}  // namespace Corvane
