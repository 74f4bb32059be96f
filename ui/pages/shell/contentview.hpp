#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shell/page.hpp"
#include "ui/pages/technical/techpage.hpp"

#include <QWidget>

#include <map>

class QStackedWidget;

namespace Corvane {

class TechPageView;

/// All that the window shows: header, strip and the page, which takes no input unless the link is
/// up. Pages are built when they are first shown. The model must outlive it.
class ContentView final : public QWidget {
public:
    /// Smallest and usual size.
    static constexpr QSize smallest{1240, 780};
    static constexpr QSize usual{1280, 820};

    /// With `choosesLink` false the header only names the chosen link.
    ContentView(AppModel& model, bool choosesLink, QWidget* parent);

    Property<Page> page{Page::tone};
    Property<TechPage> techPage{TechPage{}};

    /// What moves the window: all above the page.
    int headHeight() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Veil;

    void showPage();
    QWidget* simplePage(Page which);

    AppModel& model;
    QStackedWidget* pages;
    std::map<Page, QWidget*> built;
    TechPageView* technicalPages = nullptr;
    Veil* veil;
};

}  // namespace Corvane
