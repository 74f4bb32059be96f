#pragma once

#include "app/model/appmodel.hpp"

#include <QString>

namespace Corvane::Diagnostics {

/// What has happened, for a reader who looks for a fault. One line for each event, speaker or frame,
/// in columns of equal width.
QString events(const AppModel& model);
QString counts(const AppModel& model, const LineReport& line);
QString frames(const LineReport& line);

/// The state of the link in words: "Conectado a COM3".
QString statusText(const Status& status);

/// All three, with the state of the link and the speakers, for a message to the support.
QString everything(const AppModel& model);

}  // namespace Corvane::Diagnostics
