#pragma once

#include "app/model/appmodel.hpp"
#include "ui/pages/technical/tablerow.hpp"

#include "ui/kit/wellmenu.hpp"

#include <QColor>

#include <optional>
#include <string_view>

namespace Corvane {

/// A crossover filter of an output.
class FilterRow final : public TableRow {
public:
    /// `kind` is `hpf` or `lpf`; `color` is that of the title, which has the colour of text without.
    FilterRow(AppModel& model, Wendril::ModuleKind kind, std::string_view channel,
              std::optional<QColor> color, QWidget* parent);

    Kit::MenuButton& menu() { return *slope; }

private:
    Kit::WellMenu<std::uint8_t>* slope;
};

/// "HPF" or "LPF".
QString titleOf(Wendril::ModuleKind filter);

/// "HPF 80 Hz Butterworth 24 dB", "LPF desligado".
QString filterText(Wendril::ModuleKind kind, const Wendril::FilterValue& value);

}  // namespace Corvane
