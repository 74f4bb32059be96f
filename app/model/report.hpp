#pragma once

#include <cstdint>
#include <string>

namespace Corvane {

/// The end of something that the user has asked for, in words. The number grows with each report, so
/// that equal texts in a row are two reports.
struct Report {
    std::uint64_t number = 0;
    std::string text;

    bool operator==(const Report&) const = default;
};

}  // namespace Corvane
