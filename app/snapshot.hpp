#pragma once

#include "app/model/appmodel.hpp"

#include <memory>

/// The unattended mode: sets up a chain, draws every page into a PNG file and ends the program.
/// CORVANE_SNAPSHOT names the folder of the files, CORVANE_PORT the serial port of the chain.
namespace Corvane::Snapshot {

/// Whether CORVANE_SNAPSHOT is set, to whatever.
bool isActive();

/// The whole run, on the model's executor, which must be the Qt event loop's. It needs neither
/// screen nor speakers: whatever fails is to be seen in the pictures, and pictures that cannot be
/// written are left out. It ends with the event loop told to quit.
Wendril::Task<void> runIfRequested(std::shared_ptr<AppModel> model);

}  // namespace Corvane::Snapshot
