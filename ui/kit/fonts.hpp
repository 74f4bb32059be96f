#pragma once

#include <QString>

namespace Theme {

/// The family of all texts. The program carries its fonts and uses them where it is not installed.
QString textFamily();

}  // namespace Theme
