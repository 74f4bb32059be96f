#include "ui/kit/outputmeters.hpp"

#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/theme.hpp"

#include <algorithm>
#include <cmath>

namespace Kit {

OutputMeters::OutputMeters(int outputs, int height, QWidget* parent)
    : QWidget(parent) {
    constexpr int wellWidth = 64;
    constexpr int wellPadding = 18;
    constexpr int sidePadding = 13;
    constexpr int barWidth = 4;
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    auto* const field = new Well(24, this);
    field->setFixedSize(wellWidth, height);
    constexpr double room = wellWidth - 2.0 * sidePadding - barWidth;
    for (int i = 0; i < outputs; ++i) {
        auto* const bar = new MeterBar(barWidth, field);
        bar->setAccessibleName(QStringLiteral("Saída %1").arg(i + 1));
        const double left = sidePadding + (outputs > 1 ? room * i / (outputs - 1) : room / 2);
        bar->setGeometry(static_cast<int>(std::round(left)) - MeterBar::glow, wellPadding - MeterBar::glow,
                         bar->width(), height - 2 * (wellPadding - MeterBar::glow));
        bars.push_back(bar);
    }
    auto* const title =
        new Caption(QStringLiteral("SAÍDAS"), Theme::font(12, QFont::Normal, 2), Theme::text, this);
    peak = new Caption({}, Theme::font(13), Theme::secondary, this);
    peak->setTabular(true);
    peak->setAlignment(Qt::AlignCenter);
    peak->reserveFor(QStringLiteral("-88.8 dB"));
    title->setFixedHeight(Fader::labelLine);
    peak->setFixedHeight(Fader::labelLine);
    rows->addWidget(field, 0, Qt::AlignHCenter);
    rows->addSpacing(Fader::labelGap);
    rows->addWidget(title, 0, Qt::AlignHCenter);
    rows->addWidget(peak, 0, Qt::AlignHCenter);
    setLevels({});
}

void OutputMeters::setLevels(const std::vector<float>& levels) {
    for (std::size_t i = 0; i < std::min(levels.size(), bars.size()); ++i)
        bars[i]->setLevel(levels[i]);
    const auto highest = std::ranges::max_element(levels);
    const bool known = highest != levels.end() && std::isfinite(*highest);
    peak->setText(known ? Formats::decibels(*highest) : QStringLiteral("—"));
}

}  // namespace Kit
