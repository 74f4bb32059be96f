#pragma once

#include <string_view>

namespace Wendril {

/// Ends the program with `message` on standard error: a promise between our own parts is broken,
/// and going on would send wrong bytes to a loudspeaker.
[[noreturn]] void contractBroken(std::string_view message);

}  // namespace Wendril
