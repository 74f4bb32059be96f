#pragma once

#include "app/model/appmodel.hpp"

#include "ui/kit/pagestack.hpp"
#include "ui/pages/shell/page.hpp"
#include "ui/pages/technical/techpage.hpp"

#include <QPointer>
#include <QWidget>

#include <map>

namespace Corvane {

class HeaderBar;
class Keyboard;
class ReportLine;
class SpeakerStrip;
class TechPageView;

/// The content of the window: header, strip and page. The page takes no input unless the link is
/// online and the page is not locked. A page is built when it is first shown. The model must outlive
/// the view.
class ContentView final : public QWidget {
public:
    /// With `choosesLink` false the header names the chosen link and offers no choice.
    ContentView(AppModel& model, bool choosesLink, QWidget* parent);

    Property<Page> page{Page::tone};
    Property<TechPage> techPage{TechPage{}};
    Property<bool> locked{false};  // the page takes no input

    /// Moves the focus in the order in which the window is read.
    bool focusNextPrevChild(bool next) override;

    /// Height of header and strip together, by which the window is moved.
    int headHeight() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Veil;

    void showPage();
    void showDiagnostics();
    QWidget* simplePage(Page which);

    AppModel& model;
    HeaderBar* header;
    SpeakerStrip* strip;
    Kit::PageStack* pages;
    std::map<Page, QWidget*> built;
    TechPageView* technicalPages = nullptr;
    Veil* veil;
    ReportLine* reportLine;
    Keyboard* keyboard = nullptr;
    QPointer<QWidget> diagnostics;  // while its window is open
};

}  // namespace Corvane
