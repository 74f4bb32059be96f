#include "ui/pages/technical/techmainview.hpp"

#include "ui/pages/technical/channelstrip.hpp"
#include "ui/pages/technical/presetpanel.hpp"
#include "ui/pages/technical/routingpanel.hpp"

#include "ui/kit/theme.hpp"

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double trackHeight = 280;

void addStrips(QBoxLayout& row, AppModel& model, std::span<const std::string_view> channels,
               const QString& title, QWidget* parent) {
    int number = 0;
    for (const std::string_view channel : channels) {
        row.addWidget(new ChannelStrip(model, channel, title.arg(++number), trackHeight, parent), 0,
                      Qt::AlignTop);
        row.addStretch(1);
    }
}

QWidget* divider(QWidget* parent) {
    auto* const line = new QWidget(parent);
    QPalette colors = line->palette();
    colors.setColor(QPalette::Window, Theme::white(0.06));
    line->setPalette(colors);
    line->setAutoFillBackground(true);
    line->setFixedWidth(1);
    return line;
}

}  // namespace

TechMainView::TechMainView(AppModel& model, QWidget* parent)
    : PageView(QBoxLayout::LeftToRight, parent) {
    panels().addWidget(levelsPanel(model), 1);
    auto* const right = new QVBoxLayout;
    right->setSpacing(panelGap);
    right->addWidget(new PresetPanel(model, this));
    right->addWidget(new RoutingPanel(model, this), 1);
    panels().addLayout(right);
}

QWidget* TechMainView::levelsPanel(AppModel& model) {
    auto* const panel = new Kit::Panel(QStringLiteral("NÍVEIS"), this);
    auto* const strips = new QHBoxLayout;
    strips->addStretch(1);
    addStrips(*strips, model, K7Q::inputs, QStringLiteral("In %1"), panel);
    strips->addWidget(divider(panel));
    strips->addStretch(1);
    addStrips(*strips, model, K7Q::outputs, QStringLiteral("Out %1"), panel);
    panel->content().addStretch(1);
    panel->content().addLayout(strips);
    panel->content().addStretch(1);
    return panel;
}

}  // namespace Corvane
