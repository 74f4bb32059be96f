#include "ui/pages/simple/outputpicker.hpp"

#include "ui/pages/shared/bind.hpp"

#include "ui/kit/pillbutton.hpp"

#include <QHBoxLayout>

namespace Corvane {

OutputPicker::OutputPicker(AppModel& model, QWidget* parent)
    : QWidget(parent) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    addButton(model, QStringLiteral("TODAS AS SAÍDAS"), std::nullopt);
    for (int i = 0; i < static_cast<int>(Wendril::K7Q::outputs.size()); ++i)
        addButton(model, QStringLiteral("SAÍDA %1").arg(i + 1), i);
    row->addStretch();
}

void OutputPicker::addButton(AppModel& model, const QString& title, std::optional<int> output) {
    auto* const button = new Kit::PillButton(title, Kit::PillButton::Size::compact, this);
    button->action = [&model, output] { model.output = output; };
    Corvane::bind(
        *button, [&model, output] { return model.output.value() == output; },
        [button](bool chosen) { button->setOn(chosen); });
    layout()->addWidget(button);
}

}  // namespace Corvane
