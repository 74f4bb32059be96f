#pragma once

#include "Wendril/values.hpp"

#include <vector>

/// Bands of an equaliser on the clipboard. They lie there beside their text, for other programs.
namespace Corvane::EQClipboard {

enum class Content { band, equaliser };

/// One band, or all of a channel in their order.
void copy(Content content, const std::vector<Wendril::PeqValue>& bands);

/// What was copied last as that content, within the limits of a band. Empty when something else lies on
/// the clipboard.
std::vector<Wendril::PeqValue> copied(Content content);

}  // namespace Corvane::EQClipboard
