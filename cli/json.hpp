#pragma once

#include "Wendril/client.hpp"
#include "Wendril/values.hpp"

#include <nlohmann/json.hpp>

#include <string>

namespace Cli {

/// JSON whose objects keep their fields in the order in which they were added.
using Json = nlohmann::ordered_json;

/// Fields by name. Floats as the shortest decimal that reads back the same; null if not finite.
Json jsonOf(const Wendril::ModuleValue& value);
Json jsonOf(float number);
Json jsonOf(const Wendril::DeviceInfo& info);

/// As text, indented or in one line (-1). DEL and U+0080 to U+009F are escaped as the other control
/// characters are, and bytes that are no UTF-8 become U+FFFD.
std::string textOf(const Json& json, int indent = -1);

}  // namespace Cli
