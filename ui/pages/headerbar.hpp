#pragma once

#include "app/appmodel.hpp"

#include <QWidget>

class QHBoxLayout;

namespace Corvane {

/// Logo and title, the choice of the link, and the key that connects and disconnects. Alt+Control
/// held, a click on logo or title enters and leaves the technical mode.
class HeaderBar final : public QWidget {
public:
    /// With `choosesLink` false the chosen link is only named.
    HeaderBar(AppModel& model, bool choosesLink, QWidget* parent);

private:
    void addTechnicalKey(QHBoxLayout& row);
    void addLinkChoice(QHBoxLayout& row);
    void addLinkName(QHBoxLayout& row);
    void addConnectKey(QHBoxLayout& row);

    AppModel& model;
};

}  // namespace Corvane
