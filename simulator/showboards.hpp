#pragma once

#include "cli/showfile.hpp"
#include "simulator/line.hpp"

namespace Simulator {

/// Makes the boards of a line those of a show, which must have as many, and the show of its boards.
/// A preset of a show has only a name; it gets the settings of the speaker.
void loadShow(Line& line, const Cli::Show& show);
Cli::Show showOf(Line& line, std::size_t boards);

}  // namespace Simulator
