#include "ui/pages/technical/techmainview.hpp"

#include "ui/pages/technical/channelstrip.hpp"
#include "ui/pages/technical/presetpanel.hpp"
#include "ui/pages/technical/routingpanel.hpp"

#include "ui/kit/theme.hpp"

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double trackHeight = 280;

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
    auto* const row = new QHBoxLayout;
    const auto addStrips = [&](std::span<const std::string_view> channels, const QString& title) {
        row->addStretch(1);
        int number = 0;
        for (const std::string_view channel : channels) {
            strips.push_back(new ChannelStrip(model, channel, title.arg(++number), trackHeight, panel));
            row->addWidget(strips.back());
            row->addStretch(1);
        }
    };
    addStrips(K7Q::inputs, QStringLiteral("In %1"));
    row->addWidget(divider(panel));
    addStrips(K7Q::outputs, QStringLiteral("Out %1"));
    panel->content().addStretch(1);
    panel->content().addLayout(row);
    panel->content().addStretch(1);
    return panel;
}

void TechMainView::spend(int height) {
    for (ChannelStrip* const strip : strips)
        strip->setMinimumHeight(strip->sizeHint().height() + height);
}

}  // namespace Corvane
