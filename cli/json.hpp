#pragma once

#include "Wendril/client.hpp"
#include "Wendril/values.hpp"

#include <nlohmann/json.hpp>

namespace Cli {

/// JSON whose objects keep their fields in the order in which they were added.
using Json = nlohmann::ordered_json;

/// Fields by name. Floats as the shortest decimal that reads back the same; null if not finite.
Json jsonOf(const Wendril::ModuleValue& value);
Json jsonOf(float number);
Json jsonOf(const Wendril::DeviceInfo& info);

}  // namespace Cli
