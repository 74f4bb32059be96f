#pragma once

namespace Kit {

/// Whether the desktop shows what lies behind the translucent parts of windows. An X server without a
/// compositor shows them black.
bool isComposited();

}  // namespace Kit
