#include "ui/pages/simple/delayview.hpp"

#include "ui/pages/simple/delaybay.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/theme.hpp"

namespace Corvane {

DelayView::DelayView(AppModel& model, QWidget* parent)
    : PageView(QBoxLayout::LeftToRight, parent) {
    auto* const panel = new Kit::Panel(QStringLiteral("DELAY DAS SAÍDAS"), this);
    panel->setTrailing(new Kit::Caption(QStringLiteral("1 ms ≈ 34,3 cm de distância"),
                                        Theme::font(11, QFont::DemiBold, 1.5), Theme::secondary, panel));
    auto* const bays = new QHBoxLayout;
    bays->setContentsMargins(0, 8, 0, 0);
    bays->setSpacing(18);
    for (int output = 0; output < static_cast<int>(Wendril::K7Q::outputs.size()); ++output)
        bays->addWidget(new DelayBay(model, output, panel), 1);
    panel->content().addLayout(bays, 1);
    panels().addWidget(panel);
}

}  // namespace Corvane
