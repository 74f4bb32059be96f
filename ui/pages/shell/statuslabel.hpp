#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/spinner.hpp"

#include <QWidget>

namespace Corvane {

/// The state of the connection in one line, and after it the latest warning, which a click clears.
/// Where the room is too narrow the texts are elided; pointing at them shows them whole.
class StatusLabel final : public QWidget {
public:
    StatusLabel(AppModel& model, QWidget* parent);

private:
    void show(const Status& status);

    Kit::Spinner* spinner;
    QWidget* lamp;
    Kit::Caption* text;
    Kit::Caption* percentage;
};

}  // namespace Corvane
