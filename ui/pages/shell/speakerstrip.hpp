#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/tabs.hpp"
#include "ui/pages/shell/page.hpp"
#include "ui/pages/technical/techpage.hpp"

#include <QWidget>

class QHBoxLayout;

namespace Corvane {

/// A chip for each speaker, the search button, the status, and the tabs of the current mode.
class SpeakerStrip final : public QWidget {
public:
    SpeakerStrip(AppModel& model, Property<Page>& page, Property<TechPage>& techPage, QWidget* parent);

private:
    void addSearchButton(QHBoxLayout& row);
    void addSimpleTabs(QHBoxLayout& row);
    void addTechnicalTabs(QHBoxLayout& row);

    AppModel& model;
    Property<Page>& page;
    Property<TechPage>& techPage;
};

}  // namespace Corvane
