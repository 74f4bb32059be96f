#include "ui/pages/technical/techcrossoverview.hpp"

#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/pagelayout.hpp"
#include "ui/pages/technical/channelresponse.hpp"
#include "ui/pages/technical/channelstrip.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/outputcolors.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/pages/shared/bind.hpp"

#include <QGridLayout>
#include <QPainter>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr int graphHeight = 240;
constexpr int padding = Kit::EQGraph::bleed.top();  // of the panels; handles need it round a graph
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

constexpr int dotSize = static_cast<int>(Kit::lampSize + 2 * Kit::lampGlow);

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
        Kit::drawLamp(painter, rect(), color, true);
    }

private:
    const QColor color;
};

}  // namespace

TechCrossoverView::TechCrossoverView(AppModel& model, QWidget* parent)
    : Surface(parent)
    , model(model) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(pageMargins);
    rows->setSpacing(gap);
    rows->addWidget(graphPanel());
    auto* const blocks = new QGridLayout;
    blocks->setSpacing(gap);
    for (int output = 0; output < outputs; ++output)
        blocks->addWidget(block(output), output / 2, output % 2);
    rows->addLayout(blocks, 1);
}

QWidget* TechCrossoverView::graphPanel() {
    auto* const panel = new Kit::Panel({}, this);
    panel->layout()->setContentsMargins(padding, 0, 0, padding - Kit::EQGraph::bleed.bottom());
    auto* const graph = new Kit::EQGraph(graphHeight, panel);
    graph->setAccessibleName(QStringLiteral("Resposta das saídas"));
    Corvane::bind(
        *graph, [this] { return description(model); },
        [graph](const QString& text) { graph->setAccessibleDescription(text); });
    panel->content().addWidget(graph);
    for (int output = 0; output < outputs; ++output)
        Corvane::bind(
            *graph, [this, output] { return filtersOf(model, channelOf(output)); },
            [graph, output](const ChannelFilters& filters) {
                std::vector<Kit::EQGraph::Curve> curves = graph->shownCurves();
                curves.resize(outputs);
                curves.at(static_cast<std::size_t>(output)) = {titleOf(output), colorOf(output),
                                                               responseOf(filters), false};
                graph->setCurves(std::move(curves));
            });
    return panel;
}

QWidget* TechCrossoverView::block(int output) {
    auto* const panel = new Kit::Panel({}, this);
    panel->layout()->setContentsMargins(padding, 12, padding, 14);
    panel->content().setSpacing(8);
    auto* const header = new QHBoxLayout;
    header->setContentsMargins(-static_cast<int>(Kit::lampGlow), 0, 0, 0);  // aligns the dot, not its glow
    header->setSpacing(6);
    header->addWidget(new Dot(colorOf(output), panel));
    header->addWidget(
        new Kit::Caption(titleOf(output), Theme::font(12, QFont::Normal, 2), Theme::text, panel), 1);
    for (Kit::PillButton* const button :
         {muteButton(model, channelOf(output), nameOf(channelOf(output)), panel),
          polarityButton(model, channelOf(output), nameOf(channelOf(output)), panel)})
        header->addWidget(button);
    panel->content().addLayout(header);
    panel->content().addStretch(1);
    for (const ModuleKind kind : {ModuleKind::hpf, ModuleKind::lpf}) {
        auto* const row = new FilterRow(model, kind, channelOf(output), colorOf(output), panel);
        panel->content().addWidget(row);
    }
    panel->content().addStretch(1);
    return panel;
}

}  // namespace Corvane
