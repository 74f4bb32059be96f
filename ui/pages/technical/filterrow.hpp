#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/wellmenu.hpp"

#include <QColor>
#include <QWidget>

#include <optional>
#include <string_view>

namespace Corvane {

/// A crossover filter of an output.
class FilterRow final : public QWidget {
public:
    /// `kind` is `hpf` or `lpf`; `color` is that of the title, which has the colour of text without.
    FilterRow(AppModel& model, Wendril::ModuleKind kind, std::string_view channel,
              std::optional<QColor> color, QWidget* parent);

    /// Makes the row lower, where a page has no height for the menu's own.
    void setMenuHeight(int height) { slope->setFixedHeight(height); }

private:
    Kit::WellMenu<std::uint8_t>* slope;
};

/// "HPF" or "LPF".
QString titleOf(Wendril::ModuleKind filter);

/// "HPF 80 Hz Butterworth 24 dB", "LPF desligado".
QString filterText(Wendril::ModuleKind kind, const Wendril::FilterValue& value);

}  // namespace Corvane
