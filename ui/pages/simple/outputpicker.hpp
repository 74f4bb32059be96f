#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/control.hpp"
#include "ui/kit/group.hpp"

namespace Corvane {

/// Chooses the output to which edits of the page go, or all outputs.
class OutputPicker final : public Kit::Group {
public:
    OutputPicker(AppModel& model, QWidget* parent);

private:
    Kit::Control* addButton(AppModel& model, const QString& title, std::optional<int> output);
};

}  // namespace Corvane
