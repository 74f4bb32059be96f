#include "ui/kit/outputmeters.hpp"

#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/theme.hpp"

#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Kit {

namespace {

constexpr int wellWidth = 64;
constexpr int wellPadding = 18;
constexpr int barWidth = 4;

}  // namespace

OutputMeters::OutputMeters(int outputs, int height, QWidget* parent)
    : QWidget(parent)
    , field(new Well(24, this)) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    field->setFixedWidth(wellWidth);
    field->setMinimumHeight(height);
    for (int i = 0; i < outputs; ++i) {
        bars.push_back(new MeterBar(barWidth, field));
        bars.back()->setAccessibleName(QStringLiteral("Nível, Saída %1").arg(i + 1));
    }
    auto* const title =
        new Caption(QStringLiteral("SAÍDAS"), Theme::font(12, QFont::Normal, 2), Theme::text, this);
    peak = new Caption({}, Theme::font(13), Theme::secondary, this);
    peak->setTabular(true);
    peak->setAlignment(Qt::AlignCenter);
    peak->reserveFor(QStringLiteral("-88.8 dB"));
    title->setFixedHeight(Fader::labelLine);
    peak->setFixedHeight(Fader::labelLine);
    rows->addWidget(title, 0, Qt::AlignHCenter);
    rows->addSpacing(Fader::labelGap);
    rows->addWidget(field, 1, Qt::AlignHCenter);
    rows->addSpacing(Fader::labelGap);
    rows->addWidget(peak, 0, Qt::AlignHCenter);
    setLevels({});
}

void OutputMeters::resizeEvent(QResizeEvent*) {
    const double pitch = (wellWidth - 2.0 * wellPadding - barWidth) / (static_cast<double>(bars.size()) - 1);
    const double growth = double(field->width()) / wellWidth;
    const int inset = static_cast<int>(std::round(growth * (wellPadding - MeterBar::glow)));
    double left = wellPadding - MeterBar::glow;
    for (MeterBar* const bar : bars) {
        bar->setGeometry(static_cast<int>(std::round(growth * left)), inset, bar->width(),
                         field->height() - 2 * inset);
        left += pitch;
    }
}

void OutputMeters::setLevels(const std::vector<float>& levels) {
    for (std::size_t i = 0; i < std::min(levels.size(), bars.size()); ++i)
        bars[i]->setLevel(levels[i]);
    const auto highest = std::ranges::max_element(levels);
    const bool known = highest != levels.end() && std::isfinite(*highest);
    peak->setText(known ? Formats::decibels(*highest) : QStringLiteral("—"));
}

}  // namespace Kit
