#pragma once

#include <string_view>

namespace Wendril {

/// Ends the program with `message` on standard error. For a fault of the program itself, after which it
/// would send wrong bytes to a loudspeaker.
[[noreturn]] void contractBroken(std::string_view message);

}  // namespace Wendril
