#pragma once

#include "app/model/appmodel.hpp"

namespace Corvane {

/// Opens the user's manual in the browser; a notice says so when that fails.
void openManual(AppModel& model);

}  // namespace Corvane
