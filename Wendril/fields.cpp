#include "Wendril/fields.hpp"

#include <array>
#include <charconv>

namespace Wendril {

std::string fieldsText(const ModuleValue& value) {
    std::string text;
    forEachField(value, [&text](const char* name, auto field) {
        std::array<char, 64> digits;
        std::to_chars_result end{};
        if constexpr (std::is_floating_point_v<decltype(field)>)
            end = std::to_chars(digits.data(), digits.data() + digits.size(), field);
        else
            end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                static_cast<std::uint32_t>(field));
        if (!text.empty()) text += ' ';
        text.append(name).append("=").append(digits.data(), end.ptr);
    });
    return text;
}

}  // namespace Wendril
