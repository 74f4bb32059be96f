#include "cli/output.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <system_error>

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

std::string printable(const std::string& text) {
    constexpr std::string_view replacement = "\uFFFD";
    std::string clean;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // U+0080 to U+009F are control characters too.
        const bool isC1 =
            byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        if (isC1) ++i;
        if (isC1 || byte == 0x7F || (byte < 0x20 && byte != '\n' && byte != '\r'))
            clean += replacement;
        else
            clean += text[i];
    }
    return clean;
}

void print(const std::string& raw) {
    const std::string text = printable(raw);
    if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0) return;
    throw std::system_error(errno, std::generic_category(), "não foi possível escrever o resultado");
}

void printJson(const Json& json) { print(textOf(json, 2) + "\n"); }

std::string table(const Row& titles, std::vector<Row> rows) {
    for (Row& row : rows)
        for (std::string& cell : row)
            std::ranges::replace_if(
                cell, [](char c) { return c == '\n' || c == '\r'; }, '\x7F');
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

}  // namespace Cli
