#pragma once

#include "ui/kit/pillbutton.hpp"

#include <functional>

namespace Corvane {

/// The titles of a button while it is lit and while it is not.
struct SwitchTitles {
    QString lit;
    QString unlit;
};

/// A compact button, lit while `isLit` is true. A click calls `change`. Screen readers know it by `name`, the
/// name of what it switches.
Kit::PillButton* switchButton(const QString& name, const SwitchTitles& titles, std::function<bool()> isLit,
                              Kit::Button::Action change, QWidget* parent);

}  // namespace Corvane
