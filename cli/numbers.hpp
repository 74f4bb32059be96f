#pragma once

#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

// Numbers in texts, written the same in every locale.
namespace Cli {

/// `text` as a decimal number, or none when any part of it is something else. "nan" and "inf" are
/// floating-point numbers.
template <class Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, number);
    if (error != std::errc{} || end != last) return std::nullopt;
    return number;
}

/// The same, or none for a number outside `lowest` to `highest`.
template <class Number>
std::optional<Number> parseNumber(std::string_view text, Number lowest, Number highest) {
    const auto number = parseNumber<Number>(text);
    return number && *number >= lowest && *number <= highest ? number : std::nullopt;
}

/// The shortest text without an exponent that reads back as the same number.
template <class Number>
std::string numberText(Number number) {
    std::array<char, 400> digits;  // the largest double has 309 digits
    char* const last = digits.data() + digits.size();
    if constexpr (std::is_floating_point_v<Number>)
        return {digits.data(), std::to_chars(digits.data(), last, number, std::chars_format::fixed).ptr};
    else
        return {digits.data(), std::to_chars(digits.data(), last, number).ptr};
}

}  // namespace Cli
