#pragma once

#include <QMargins>

namespace Corvane {

/// Between the panels of a page and the edges of the page, and from one panel to the next.
constexpr QMargins pageMargins(32, 24, 32, 24);
constexpr int panelGap = 24;

}  // namespace Corvane
