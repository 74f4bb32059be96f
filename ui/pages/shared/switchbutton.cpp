#include "ui/pages/shared/switchbutton.hpp"

#include "ui/pages/shared/bind.hpp"

#include <utility>

namespace Corvane {

Kit::PillButton* switchButton(const QString& name, const SwitchTitles& titles, std::function<bool()> isLit,
                              Kit::Button::Action change, QWidget* parent) {
    auto* const button = new Kit::PillButton(titles.unlit, Kit::PillButton::Size::compact, parent);
    button->setUse(Kit::Button::Use::toggle);
    button->setAccessibleName(name);
    button->reserveFor({titles.lit, titles.unlit});
    button->action = std::move(change);
    Corvane::bind(*button, std::move(isLit), [button, titles](bool lit) {
        button->setTitle(lit ? titles.lit : titles.unlit);
        button->setOn(lit);
    });
    return button;
}

}  // namespace Corvane
