#pragma once

#include "app/model/appmodel.hpp"

#include <QWidget>

namespace Corvane {

/// Chooses the output that the output edits of a page go to, or all of them.
class OutputPicker final : public QWidget {
public:
    OutputPicker(AppModel& model, QWidget* parent);

private:
    void addButton(AppModel& model, const QString& title, std::optional<int> output);
};

}  // namespace Corvane
