#include "ui/pages/technical/filterrow.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/modulesetting.hpp"
#include "ui/pages/shared/text.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/roving.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/theme.hpp"

#include <algorithm>
#include <cmath>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr double bypassedOpacity = 0.6;

}  // namespace

QString titleOf(ModuleKind filter) {
    return filter == ModuleKind::hpf ? QStringLiteral("HPF") : QStringLiteral("LPF");
}

QString filterText(ModuleKind kind, const FilterValue& value) {
    if (value.bypass) return titleOf(kind) + QStringLiteral(" desligado");
    const auto* const slope = std::ranges::find(FilterMath::slopes, value.type, &FilterMath::Slope::code);
    return QStringList{titleOf(kind), Formats::spokenHz(value.fc),
                       slope == FilterMath::slopes.end() ? QString() : toQString(slope->name)}
        .join(u' ');
}

FilterRow::FilterRow(AppModel& model, ModuleKind kind, std::string_view channel, std::optional<QColor> color,
                     QWidget* parent)
    : TableRow(parent) {
    const ModuleSetting<FilterValue> filter(model, kind, channel);
    const QString name = titleOf(kind);
    Kit::setContext(*this, {nameOf(channel)});
    const QColor titleColor = color.value_or(Theme::text);
    auto* const title = new Kit::Caption(name, Theme::font(11, QFont::Normal, 1.5), titleColor, this);
    title->setFixedWidth(30);
    auto* const on = new Kit::LampSwitch(name, this);
    on->action = [filter] { filter.edit([](FilterValue& value) { value.bypass = !value.bypass; }); };
    const Limits limits = filter.limits("fc");
    auto* const fc =
        new Kit::ScrubField(name + QStringLiteral(", frequência"), rangeOf(limits), Formats::formatHz,
                            {.step = limits.step, .logarithmic = true, .width = 72}, this);
    fc->onChange = [filter](double hz) {
        filter.edit([hz](FilterValue& value) { value.fc = static_cast<std::uint32_t>(std::lround(hz)); });
    };
    slope = new Kit::WellMenu<std::uint8_t>(138, this);
    slope->setAccessibleName(name + QStringLiteral(", inclinação"));
    Kit::WellMenu<std::uint8_t>::Options options;
    for (const FilterMath::Slope& each : FilterMath::slopes)
        options.emplace_back(each.code, toQString(each.name));
    slope->setOptions(std::move(options));
    slope->onSelect = [filter](std::uint8_t code) {
        filter.edit([code](FilterValue& value) { value.type = code; });
    };
    setCells({title, on, fc, slope});
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    (new Kit::Roving(0, Kit::Roving::Choice::stays, this))->setControls({on, fc, slope});

    Corvane::bind(
        *this, [filter] { return filter.value(); },
        [=, this](const FilterValue& value) {
            on->setOn(!value.bypass);
            fc->setValue(value.fc);
            slope->setSelection(value.type);
            const double opacity = value.bypass ? bypassedOpacity : 1;
            title->setColor(Theme::faded(titleColor, opacity));
            for (Kit::Control* const control : std::initializer_list<Kit::Control*>{on, fc, slope})
                control->setOpacity(opacity);
        });
}

}  // namespace Corvane
