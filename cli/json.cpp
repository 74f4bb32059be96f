#include "cli/json.hpp"

#include "Wendril/fields.hpp"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
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

std::string textOf(const Json& json, int indent) {
    const std::string text = json.dump(indent, ' ', false, Json::error_handler_t::replace);
    std::string escaped;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        if (byte == 0x7F) {
            escaped += "\\u007f";
        } else if (byte == 0xC2 && next < 0xA0) {
            constexpr std::string_view digits = "0123456789abcdef";
            escaped += std::string("\\u00") + digits[next >> 4] + digits[next & 0xF];
            ++i;
        } else {
            escaped += text[i];
        }
    }
    return escaped;
}

}  // namespace Cli
