#include "ui/pages/switchkey.hpp"

#include "ui/kit/bind.hpp"

#include <utility>

namespace Corvane {

Kit::PillButton* switchKey(const SwitchTitles& titles, std::function<bool()> isLit, Kit::Key::Action change,
                           QWidget* parent) {
    auto* const key = new Kit::PillButton(titles.unlit, Kit::PillButton::Size::compact, parent);
    key->reserveFor({titles.lit, titles.unlit});
    key->action = std::move(change);
    Kit::bind(*key, std::move(isLit), [key, titles](bool lit) {
        key->setTitle(lit ? titles.lit : titles.unlit);
        key->setOn(lit);
    });
    return key;
}

}  // namespace Corvane
