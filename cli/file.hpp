#pragma once

#include <cstddef>
#include <string>

namespace Cli {

/// The contents of a file, or of standard input for "-". Throws std::runtime_error when it cannot be read
/// or has more than `mostFileBytes`.
constexpr std::size_t mostFileBytes = 16 << 20;
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& text);

}  // namespace Cli
