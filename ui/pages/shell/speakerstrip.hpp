#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/tabs.hpp"
#include "ui/pages/shared/room.hpp"
#include "ui/pages/shell/page.hpp"
#include "ui/pages/technical/techpage.hpp"

#include <QWidget>

class QHBoxLayout;

namespace Corvane {

/// A chip for each speaker, the search button (while the page is locked: a padlock), the status, and
/// the tabs of the current mode. In a row that is too narrow the chips give way first: their names get
/// shorter, then they scroll. When two of them are left to be seen, the status gives way, too.
class SpeakerStrip final : public QWidget {
public:
    /// The choices of the window that the strip shows and changes.
    struct Choices {
        Property<Page>& page;
        Property<TechPage>& techPage;
        Property<bool>& locked;
    };

    SpeakerStrip(AppModel& model, const Choices& choices, QWidget* parent);

    /// Hidden while the page is not locked.
    QWidget& padlock() const { return *lock; }

    void setRoom(const Room& room);

private:
    class Row;

    void addSearchButton(QHBoxLayout& row);
    void addSimpleTabs(QHBoxLayout& row);
    void addTechnicalTabs(QHBoxLayout& row);

    AppModel& model;
    Choices choices;
    QWidget* lock;
};

}  // namespace Corvane
