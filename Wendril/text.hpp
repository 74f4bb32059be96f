#pragma once

#include "Wendril/frame.hpp"

#include <cstdint>
#include <string>

namespace Wendril {

/// The text in a fixed-size field of a reply: up to the first zero byte, as valid UTF-8 (each
/// invalid sequence becomes U+FFFD), without spaces and tabs at either end.
std::string fieldText(ByteView field);

/// A speaker's address as users read it: "01", "12", "254".
std::string twoDigits(std::uint8_t address);

}  // namespace Wendril
