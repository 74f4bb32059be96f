#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/spinner.hpp"

#include <QWidget>

namespace Corvane {

/// The status of the link in one line, followed by the notice, which a click clears. Texts that are
/// too long for the row are elided; their tooltips show them whole.
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
