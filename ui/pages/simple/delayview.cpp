#include "ui/pages/simple/delayview.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/bindfield.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/delaybutton.hpp"
#include "ui/pages/shared/pagelayout.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/theme.hpp"

namespace Corvane {

using namespace Wendril;

DelayView::DelayView(AppModel& model, QWidget* parent)
    : Surface(parent)
    , model(model) {
    auto* const panel = new Kit::Panel(QStringLiteral("DELAY DAS SAÍDAS"), this);
    panel->setTrailing(new Kit::Caption(QStringLiteral("1 ms ≈ 34,3 cm de distância"),
                                        Theme::font(11, QFont::DemiBold, 1.5), Theme::secondary, panel));
    auto* const columns = new QHBoxLayout;
    columns->addStretch(1);
    for (int i = 0; i < static_cast<int>(K7Q::outputs.size()); ++i) {
        columns->addLayout(column(i, panel));
        columns->addStretch(1);
    }
    panel->content().addSpacing(8);
    panel->content().addStretch(1);
    panel->content().addLayout(columns);
    panel->content().addStretch(1);
    auto* const page = new QVBoxLayout(this);
    page->setContentsMargins(pageMargins);
    page->addWidget(panel);
}

QLayout* DelayView::column(int output, QWidget* parent) {
    const std::string_view channel = K7Q::outputs.at(static_cast<std::size_t>(output));
    const ModuleSetting<DelayValue> delay(model, ModuleKind::delay, channel);
    const Limits limits = delay.limits("ms");
    auto* const fader =
        faderFor(limits, QStringLiteral("Saída %1").arg(output + 1), Formats::delay, {.height = 300}, parent);
    fader->spokenFormat = Formats::spokenDelay;
    bindField(*fader, delay, &DelayValue::ms);

    auto* const distance = new Kit::Caption({}, Theme::font(12, QFont::Medium), Theme::secondary, parent);
    distance->setTabular(true);
    distance->setAlignment(Qt::AlignCenter);
    distance->reserveFor(Formats::distance(limits.highest));
    Corvane::bind(
        *distance, [delay] { return delay.value().ms; },
        [distance](float ms) { distance->setText(Formats::distance(ms)); });

    auto* const rows = new QVBoxLayout;
    rows->setSpacing(12);
    rows->addWidget(fader, 0, Qt::AlignHCenter);
    rows->addWidget(distance, 0, Qt::AlignHCenter);
    rows->addWidget(delayButton(channel, delay, parent), 0, Qt::AlignHCenter);
    return rows;
}

}  // namespace Corvane
