#pragma once

#include "ui/kit/pillbutton.hpp"

#include <QString>

namespace Corvane {

constexpr const char* muteObjectName = "mute";

/// Makes the button the mute of the part of a page that it stands in: the key M finds it. Screen readers
/// know it by what it mutes.
inline void markAsMute(Kit::PillButton& button, const QString& what) {
    button.setUse(Kit::Button::Use::toggle);
    button.setObjectName(QLatin1String(muteObjectName));
    button.setAccessibleName(QStringLiteral("Mudo, ") + what);
    button.setToolTip(QStringLiteral("Mudo (M)"));
}

}  // namespace Corvane
