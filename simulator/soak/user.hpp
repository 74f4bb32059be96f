#pragma once

#include "app/model/appmodel.hpp"
#include "simulator/soak/chance.hpp"

#include <string>

namespace Soak {

/// Does something at random to the model, as a user would. Returns its name, for the log.
std::string gesture(Corvane::AppModel& model, Chance& chance);

}  // namespace Soak
