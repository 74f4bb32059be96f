#pragma once

#include <QIcon>

namespace Corvane {

/// The icon of the window, whether the program is installed or not.
QIcon icon();

}  // namespace Corvane
