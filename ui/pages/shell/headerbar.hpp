#pragma once

#include "app/model/appmodel.hpp"

#include <QWidget>

class QHBoxLayout;

namespace Corvane {

/// Logo and title, the choice of the link, and the button that connects and disconnects. Alt+Control
/// held, a click on logo or title enters and leaves the technical mode.
class HeaderBar final : public QWidget {
public:
    /// With `choosesLink` false the chosen link is only named.
    HeaderBar(AppModel& model, bool choosesLink, QWidget* parent);

private:
    void addTechnicalButton(QHBoxLayout& row);
    void addLinkChoice(QHBoxLayout& row);
    void addLinkName(QHBoxLayout& row);
    void addConnectButton(QHBoxLayout& row);

    AppModel& model;
};

}  // namespace Corvane
