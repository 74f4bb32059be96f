#pragma once

#include "Wendril/values.hpp"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace Cli {

/// JSON whose objects keep their fields in the order in which they were added.
using Json = nlohmann::ordered_json;

/// Writes a result to standard output. Throws std::system_error when it cannot be written, for
/// example to a full disk: a command without its result has failed.
void print(const std::string& text);
void printJson(const Json& json);

using Row = std::vector<std::string>;

/// A table with a title row, in columns as wide as their widest text.
std::string table(const Row& titles, const std::vector<Row>& rows);

/// Fixed decimals with a decimal point, whatever the locale; "-" for what is not finite.
std::string fixed(double number, int decimals);

/// Fields by name. Floats as the shortest decimal that reads back the same; null if not finite.
Json jsonOf(const Wendril::ModuleValue& value);
Json jsonOf(float number);

}  // namespace Cli
