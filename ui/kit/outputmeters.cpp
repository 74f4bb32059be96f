#include "ui/kit/outputmeters.hpp"

#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/theme.hpp"

#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Kit {

namespace {

constexpr int wellWidth = 64;
constexpr int wellPadding = 18;
constexpr int barWidth = 4;
constexpr double silence = -std::numeric_limits<double>::infinity();

}  // namespace

OutputMeters::OutputMeters(int outputs, int height, QWidget* parent)
    : QWidget(parent)
    , field(new Well(24, this))
    , readOut(new Caption({}, Theme::font(13), Theme::secondary, this))
    , peak(Animation::Kind::steps, silence, *this, [this] { showPeak(); }) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    field->setFixedWidth(wellWidth);
    field->setMinimumHeight(height);
    QStringList names;
    for (int i = 1; i <= outputs; ++i)
        names << QStringLiteral("Nível, Saída %1").arg(i);
    const int pitch = (wellWidth - 2 * wellPadding - barWidth) / std::max(1, outputs - 1);
    bars = new MeterBars(
        names, {barWidth, pitch}, [this](QPainter& painter) { field->draw(painter); }, field);
    auto* const title =
        new Caption(QStringLiteral("SAÍDAS"), Theme::font(12, QFont::Normal, 2), Theme::text, this);
    readOut->setTabular(true);
    readOut->setAlignment(Qt::AlignCenter);
    readOut->reserveFor(QStringLiteral("-88.8 dB"));
    title->setFixedHeight(Fader::labelLine);
    readOut->setFixedHeight(Fader::labelLine);
    rows->addWidget(title, 0, Qt::AlignHCenter);
    rows->addSpacing(Fader::labelGap);
    rows->addWidget(field, 1, Qt::AlignHCenter);
    rows->addSpacing(Fader::labelGap);
    rows->addWidget(readOut, 0, Qt::AlignHCenter);
    showPeak();
}

void OutputMeters::resizeEvent(QResizeEvent*) {
    const double growth = double(field->width()) / wellWidth;
    const int inset = static_cast<int>(std::round(growth * (wellPadding - MeterBars::glow)));
    bars->setGeometry(field->rect().adjusted(inset, inset, -inset, -inset));
}

void OutputMeters::showPeak() {
    readOut->setText(std::isfinite(peak.position()) ? Formats::decibels(peak.position())
                                                    : QStringLiteral("—"));
}

void OutputMeters::setLevels(const std::vector<float>& levels) {
    bars->setLevels(levels);
    const auto highest = std::ranges::max_element(levels);
    const bool known = highest != levels.end() && std::isfinite(*highest);
    peak.moveTo(known ? *highest : silence);
}

}  // namespace Kit
