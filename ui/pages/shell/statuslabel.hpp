#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/caption.hpp"
#include "ui/kit/spinner.hpp"
#include "ui/pages/shell/warning.hpp"

#include <QWidget>

namespace Corvane {

/// The status of the link in one line, then what is being done with presets, then the notice, which a
/// click clears. Texts that are too long for the row are elided, down to a width at which they can
/// still be recognised; their tooltips show them whole.
class StatusLabel final : public QWidget {
public:
    StatusLabel(AppModel& model, QWidget* parent);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void show(const Status& status);

    Kit::Spinner* spinner;
    QWidget* lamp;
    Kit::Caption* text;
    Warning* error;
    Kit::Percentage* percentage;
};

}  // namespace Corvane
