#include "cli/output.hpp"

#include "Wendril/fields.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <system_error>
#include <type_traits>

namespace Cli {

namespace {

// In columns of a terminal: UTF-8 continuation bytes take none.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string line(const Row& row, const std::vector<std::size_t>& widths) {
    std::string text;
    for (std::size_t i = 0; i < row.size(); ++i) {
        text += row[i];
        if (i + 1 < row.size()) text.append(widths[i] - widthOf(row[i]) + 2, ' ');
    }
    return text + "\n";
}

}  // namespace

void print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return;
    throw std::system_error(errno, std::generic_category(), "não foi possível escrever o resultado");
}

void printJson(const Json& json) { print(json.dump(2) + "\n"); }

std::string table(const Row& titles, const std::vector<Row>& rows) {
    std::vector<std::size_t> widths;
    for (const std::string& title : titles)
        widths.push_back(widthOf(title));
    for (const Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    std::string text = line(titles, widths);
    for (const Row& row : rows)
        text += line(row, widths);
    return text;
}

std::string fixed(double number, int decimals) {
    if (!std::isfinite(number)) return "-";
    std::array<char, 400> digits;  // the largest double has 309 before the point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                   std::chars_format::fixed, decimals);
    return {digits.data(), end.ptr};
}

Json jsonOf(float number) {
    if (!std::isfinite(number)) return nullptr;
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    double exact = 0;
    std::from_chars(digits.data(), end.ptr, exact);
    return exact;
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
