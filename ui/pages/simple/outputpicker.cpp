#include "ui/pages/simple/outputpicker.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/channelname.hpp"

#include "ui/kit/pillbutton.hpp"
#include "ui/kit/roving.hpp"

#include <QHBoxLayout>

#include <utility>
#include <vector>

namespace Corvane {

OutputPicker::OutputPicker(AppModel& model, QWidget* parent)
    : Group(QStringLiteral("Saídas"), parent) {
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    std::vector<Kit::Control*> buttons{addButton(model, QStringLiteral("TODAS AS SAÍDAS"), std::nullopt)};
    for (int i = 0; i < static_cast<int>(Wendril::K7Q::outputs.size()); ++i)
        buttons.push_back(addButton(model, QStringLiteral("SAÍDA %1").arg(i + 1), i));
    row->addStretch();
    (new Kit::Roving(0, Kit::Roving::Choice::moves, this))->setControls(std::move(buttons));
}

Kit::Control* OutputPicker::addButton(AppModel& model, const QString& title, std::optional<int> output) {
    auto* const button = new Kit::PillButton(title, Kit::PillButton::Size::compact, this);
    button->setUse(Kit::Button::Use::choice);
    button->setAccessibleName(spoken(title));
    button->action = [&model, output] { model.output = output; };
    Corvane::bind(
        *button, [&model, output] { return model.output.value() == output; },
        [button](bool chosen) { button->setOn(chosen); });
    layout()->addWidget(button);
    return button;
}

}  // namespace Corvane
