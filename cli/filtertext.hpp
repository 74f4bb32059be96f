#pragma once

#include "Wendril/values.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace Cli {

/// The filters of a text file as measurement programs and equaliser front ends write it, within the
/// limits of the board.
struct FilterText {
    std::vector<Wendril::PeqValue> bands;  // in the order of the file
    std::vector<std::string> remarks;      // what was limited or left out, with its line, in Portuguese

    /// Lines that are no filters are comments. Never throws for the contents of a file.
    static FilterText parse(std::string_view text);
};

/// The same form: "Filter 1: ON PK Fc 63 Hz Gain -4.5 dB Q 3". A band of an unknown type is "None".
std::string filterText(const std::vector<Wendril::PeqValue>& bands);

}  // namespace Cli
