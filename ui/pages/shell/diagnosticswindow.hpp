#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/panel.hpp"

#include <QTimer>

namespace Corvane {

/// The events, the counts of the line and its latest frames, as text that follows what happens and can
/// be selected. "Copiar" puts all of it on the clipboard. The window destroys itself when it is closed.
class DiagnosticsWindow final : public Kit::Surface {
public:
    DiagnosticsWindow(AppModel& model, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    class Text;

    Kit::Panel* panelFor(const QString& title, Text* text);
    void showLine();

    AppModel& model;
    Text* events;
    Text* counts;
    Text* frames;
    QTimer timer;
};

}  // namespace Corvane
