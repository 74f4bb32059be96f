#pragma once

#include "app/model/appmodel.hpp"

#include <QColor>
#include <QWidget>

#include <optional>
#include <string_view>

namespace Corvane {

/// A crossover filter of an output: `kind` is `hpf` or `lpf`. Its title takes the colour.
class FilterRow final : public QWidget {
public:
    FilterRow(AppModel& model, Wendril::ModuleKind kind, std::string_view channel,
              std::optional<QColor> color, QWidget* parent);
};

/// "HPF" or "LPF".
QString titleOf(Wendril::ModuleKind filter);

}  // namespace Corvane
