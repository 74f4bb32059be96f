#pragma once

#include "ui/pages/shell/contentview.hpp"

#include <QObject>

namespace Corvane {

/// Tells users of screen readers what happens without their doing, and what they cannot see that they
/// have done: the state of the link, the reading of the speakers, notices, what has been undone or done
/// with presets, and which speaker and outputs are chosen.
class Speech final : public QObject {
public:
    Speech(AppModel& model, ContentView& view);
};

}  // namespace Corvane
