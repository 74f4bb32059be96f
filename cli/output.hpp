#pragma once

#include "cli/json.hpp"

#include <string>
#include <vector>

namespace Cli {

/// The text with each control character replaced by U+FFFD: what a board sends must not act on a
/// terminal. Line ends stay, and the carriage return of a line that overwrites itself.
std::string printable(const std::string& text);

/// Writes a result to standard output, made printable. Throws std::system_error when it cannot be written,
/// for example to a full disk: a command without its result has failed.
void print(const std::string& text);
void printJson(const Json& json);

using Row = std::vector<std::string>;

/// A table with a title row, in columns as wide as their widest text.
std::string table(const Row& titles, std::vector<Row> rows);

/// Fixed decimals with a decimal point, whatever the locale; "-" for what is not finite.
std::string fixed(double number, int decimals);

}  // namespace Cli
