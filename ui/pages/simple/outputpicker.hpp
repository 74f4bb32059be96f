#pragma once

#include "app/model/appmodel.hpp"

#include <QWidget>

namespace Corvane {

/// Chooses the output to which edits of the page go, or all outputs.
class OutputPicker final : public QWidget {
public:
    OutputPicker(AppModel& model, QWidget* parent);

private:
    void addButton(AppModel& model, const QString& title, std::optional<int> output);
};

}  // namespace Corvane
