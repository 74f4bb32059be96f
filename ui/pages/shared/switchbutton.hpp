#pragma once

#include "ui/kit/pillbutton.hpp"

#include <functional>

namespace Corvane {

/// What a button says while it is lit, and while it is not.
struct SwitchTitles {
    QString lit;
    QString unlit;
};

/// A compact button that shows a state and changes it.
Kit::PillButton* switchButton(const SwitchTitles& titles, std::function<bool()> isLit,
                              Kit::Button::Action change, QWidget* parent);

}  // namespace Corvane
