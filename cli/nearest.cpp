#include "cli/nearest.hpp"

#include <algorithm>
#include <numeric>

namespace Cli {

namespace {

std::size_t editsBetween(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::optional<std::string> nearest(const std::string& typed, const std::vector<std::string>& names) {
    std::optional<std::string> best;
    std::size_t fewest = std::max<std::size_t>(2, typed.size() / 3) + 1;
    for (const std::string& name : names) {
        const std::size_t edits = editsBetween(typed, name);
        if (edits >= fewest || edits >= name.size()) continue;
        fewest = edits;
        best = name;
    }
    return best;
}

}  // namespace Cli
