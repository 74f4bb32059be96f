#pragma once

#include "app/model/appmodel.hpp"

#include "ui/pages/shell/page.hpp"
#include "ui/pages/technical/techpage.hpp"

#include <QPointer>
#include <QWidget>

#include <map>

class QStackedWidget;

namespace Corvane {

class HeaderBar;
class ReportLine;
class SpeakerStrip;
class TechPageView;

/// The content of the window: header, strip and page. The page takes no input unless the link is
/// online and the page is not locked. A page is built when it is first shown. The model must outlive
/// the view.
///
/// Keys of the whole window: Ctrl+Z undoes, Ctrl+Shift+Z and Ctrl+Y redo, unless the page is locked;
/// Ctrl+L locks and unlocks, Ctrl+Shift+D opens the diagnostics, Escape takes the target away.
class ContentView final : public QWidget {
public:
    /// With `choosesLink` false the header names the chosen link and offers no choice.
    ContentView(AppModel& model, bool choosesLink, QWidget* parent);

    Property<Page> page{Page::tone};
    Property<TechPage> techPage{TechPage{}};
    Property<bool> locked{false};  // the page takes no input

    /// Height of header and strip together, by which the window is moved.
    int headHeight() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Veil;

    void showPage();
    void addShortcuts();
    void showDiagnostics();
    QWidget* simplePage(Page which);

    AppModel& model;
    HeaderBar* header;
    SpeakerStrip* strip;
    QStackedWidget* pages;
    std::map<Page, QWidget*> built;
    TechPageView* technicalPages = nullptr;
    Veil* veil;
    ReportLine* reportLine;
    QPointer<QWidget> diagnostics;  // while its window is open
};

}  // namespace Corvane
