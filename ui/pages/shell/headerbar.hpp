#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shared/room.hpp"

#include <QWidget>

class QHBoxLayout;

namespace Corvane {

/// Logo and title, the choice of the link, and the button that connects and disconnects. A click on
/// logo or title with Alt and Control held enters or leaves the technical mode.
class HeaderBar final : public QWidget {
public:
    /// With `choosesLink` false the header names the chosen link and offers no choice.
    HeaderBar(AppModel& model, bool choosesLink, QWidget* parent);

    QWidget& logo() const { return *title; }

    /// Connects, cancels or disconnects.
    QWidget& connectButton() const { return *connection; }

    void setRoom(const Room& room);

private:
    void addTechnicalButton(QHBoxLayout& row);
    void addLinkChoice(QHBoxLayout& row);
    void addLinkName(QHBoxLayout& row);
    void addConnectButton(QHBoxLayout& row);

    AppModel& model;
    QWidget* title;
    QWidget* connection = nullptr;
};

}  // namespace Corvane
