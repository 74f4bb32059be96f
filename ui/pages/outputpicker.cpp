#include "ui/pages/outputpicker.hpp"

#include "ui/kit/bind.hpp"
#include "ui/kit/pillbutton.hpp"

#include <QHBoxLayout>

namespace Corvane {

OutputPicker::OutputPicker(AppModel& model, QWidget* parent)
    : QWidget(parent) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    addKey(model, QStringLiteral("TODAS AS SAÍDAS"), std::nullopt);
    for (int i = 0; i < static_cast<int>(Wendril::K7Q::outputs.size()); ++i)
        addKey(model, QStringLiteral("SAÍDA %1").arg(i + 1), i);
    row->addStretch();
}

void OutputPicker::addKey(AppModel& model, const QString& title, std::optional<int> output) {
    auto* const key = new Kit::PillButton(title, Kit::PillButton::Size::compact, this);
    key->action = [&model, output] { model.output = output; };
    Kit::bind(
        *key, [&model, output] { return model.output.value() == output; },
        [key](bool chosen) { key->setOn(chosen); });
    layout()->addWidget(key);
}

}  // namespace Corvane
