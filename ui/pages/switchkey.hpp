#pragma once

#include "ui/kit/pillbutton.hpp"

#include <functional>

namespace Corvane {

/// What a key says while it is lit, and while it is not.
struct SwitchTitles {
    QString lit;
    QString unlit;
};

/// A compact key that shows a state and changes it.
Kit::PillButton* switchKey(const SwitchTitles& titles, std::function<bool()> isLit, Kit::Key::Action change,
                           QWidget* parent);

}  // namespace Corvane
