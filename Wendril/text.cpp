#include "Wendril/text.hpp"

#include <algorithm>
#include <cstddef>

namespace Wendril {

namespace {

struct Sequence {
    std::size_t bytes;  // as many as belong together, at least 1
    bool valid;
};

bool within(std::uint8_t byte, std::uint8_t low, std::uint8_t high) { return low <= byte && byte <= high; }

// The UTF-8 sequence at the start of `bytes`. The ranges of the second byte exclude overlong forms,
// surrogates and code points above U+10FFFF; an invalid sequence ends before the byte that breaks it.
Sequence firstSequence(ByteView bytes) {
    const std::uint8_t lead = bytes[0];
    if (lead < 0x80) return {1, true};
    if (!within(lead, 0xC2, 0xF4)) return {1, false};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const std::uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const std::uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (std::size_t i = 1; i < length; ++i)
        if (i >= bytes.size() || !within(bytes[i], i == 1 ? low : 0x80, i == 1 ? high : 0xBF))
            return {i, false};
    return {length, true};
}

}  // namespace

std::string fieldText(ByteView field) {
    field = field.first(static_cast<std::size_t>(std::ranges::find(field, 0) - field.begin()));
    std::string text;
    while (!field.empty()) {
        const Sequence sequence = firstSequence(field);
        if (sequence.valid)
            text.append(field.begin(), field.begin() + static_cast<std::ptrdiff_t>(sequence.bytes));
        else
            text.append("\uFFFD");
        field = field.subspan(sequence.bytes);
    }
    constexpr const char* blanks = " \t";
    const std::size_t from = text.find_first_not_of(blanks);
    if (from == text.npos) return {};
    return text.substr(from, text.find_last_not_of(blanks) - from + 1);
}

std::string twoDigits(std::uint8_t address) { return (address < 10 ? "0" : "") + std::to_string(address); }

}  // namespace Wendril
