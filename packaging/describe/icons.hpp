#pragma once

#include <QString>

namespace Describe {

/// Writes the program's icon into the hicolor theme below `share`: the drawings of `resources`, and
/// pictures of them.
void writeIcons(const QString& resources, const QString& share);

}  // namespace Describe
