#include "cli/json.hpp"

#include "Wendril/fields.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <type_traits>

namespace Cli {

Json jsonOf(float number) {
    if (!std::isfinite(number)) return nullptr;
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    double exact = 0;
    std::from_chars(digits.data(), end.ptr, exact);
    return exact;
}

Json jsonOf(const Wendril::DeviceInfo& info) {
    return {{"address", info.address}, {"product", info.product}, {"model", info.model},
            {"version", info.version}, {"date", info.date},       {"serial", info.serial}};
}

Json jsonOf(const Wendril::ModuleValue& value) {
    Json fields = Json::object();
    Wendril::forEachField(value, [&fields](const char* name, const auto& field) {
        if constexpr (std::is_floating_point_v<std::remove_cvref_t<decltype(field)>>)
            fields[name] = jsonOf(field);
        else
            fields[name] = field;
    });
    return fields;
}

}  // namespace Cli
