#pragma once

#include "Wendril/values.hpp"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace Cli {

/// Keeps fields in their own order.
using Json = nlohmann::ordered_json;

using Row = std::vector<std::string>;

/// A table with a title row, in columns as wide as their widest text.
std::string table(const Row& titles, const std::vector<Row>& rows);

/// Fixed decimals with a decimal point, whatever the locale; "-" for what is not finite.
std::string fixed(double number, int decimals);

/// Fields by name. Floats as the shortest decimal that reads back the same; null if not finite.
Json jsonOf(const Wendril::ModuleValue& value);
Json jsonOf(float number);

}  // namespace Cli
