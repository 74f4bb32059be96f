#pragma once

#include "ui/kit/pillbutton.hpp"

#include <QString>
#include <QVariant>

namespace Corvane {

constexpr const char* muteObjectName = "mute";
constexpr const char* muteProperty = "mute";

/// Makes the button the mute of the part of a page that it stands in: the key M finds it. Screen readers
/// know it by what it mutes.
inline void markAsMute(Kit::PillButton& button, const QString& what) {
    button.setUse(Kit::Button::Use::toggle);
    button.setObjectName(QLatin1String(muteObjectName));
    button.setAccessibleName(QStringLiteral("Mudo, ") + what);
    button.setToolTip(QStringLiteral("Mudo (M)"));
}

/// Makes the key M find the button in a part of a page that it does not stand in.
inline void setMuteOf(QWidget& part, QWidget& button) {
    part.setProperty(muteProperty, QVariant::fromValue(&button));
}

}  // namespace Corvane
