#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Cli {

/// The name that `typed` is most likely meant to be: the one with the fewest letters to insert, remove
/// or replace. None when more than a third of the letters differ.
std::optional<std::string> nearest(const std::string& typed, const std::vector<std::string>& names);

}  // namespace Cli
