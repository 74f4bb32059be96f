#include "ui/pages/shell/contentview.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/growth.hpp"
#include "ui/pages/shared/room.hpp"
#include "ui/pages/shell/diagnosticswindow.hpp"
#include "ui/pages/shell/gesturefilter.hpp"
#include "ui/pages/shell/headerbar.hpp"
#include "ui/pages/shell/keyboard.hpp"
#include "ui/pages/shell/offlinecard.hpp"
#include "ui/pages/shell/reportline.hpp"
#include "ui/pages/shell/speakerstrip.hpp"
#include "ui/pages/shell/speech.hpp"
#include "ui/pages/simple/delayview.hpp"
#include "ui/pages/simple/dynamicsview.hpp"
#include "ui/pages/simple/toneview.hpp"
#include "ui/pages/technical/techpageview.hpp"

#include "ui/kit/announcer.hpp"
#include "ui/kit/backdrop.hpp"
#include "ui/kit/control.hpp"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <tuple>

namespace Corvane {

namespace {

constexpr double dimmedOpacity = 0.45;

}  // namespace

// Covers the page while the link is not online. Drawing the backdrop over the page at opacity
// 1 - dimmedOpacity gives the same pixels as drawing the page over the backdrop at dimmedOpacity.
class ContentView::Veil final : public Kit::Surface {
public:
    Veil(AppModel& model, QWidget* parent)
        : Surface(parent) {
        auto* const middle = new QVBoxLayout(this);
        middle->addWidget(new OfflineCard(model, this), 0, Qt::AlignCenter);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        {
            QPainter painter(this);
            painter.setOpacity(1 - dimmedOpacity);
            painter.translate(-pos());
            Kit::drawBackdrop(painter, parentWidget()->rect());
        }
        Surface::paintEvent(event);
    }

    // The card grows as the page under it does.
    void resizeEvent(QResizeEvent* event) override {
        growth.apply(Room::in(window()->size()).growth);
        growth.settle();
        Surface::resizeEvent(event);
    }

private:
    Growth growth{*this};
};

ContentView::ContentView(AppModel& model, bool choosesLink, QWidget* parent)
    : QWidget(parent)
    , model(model)
    , header(new HeaderBar(model, choosesLink, this))
    , strip(new SpeakerStrip(model, {page, techPage, locked}, this))
    , pages(new Kit::PageStack(this))
    , veil(new Veil(model, this))
    , reportLine(new ReportLine(model, this)) {
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(header);
    rows->addWidget(strip);
    rows->addWidget(pages, 1);
    setMinimumSize(Room::least);
    resize(Room::usual);

    Corvane::bind(
        *this, [this, &model] { return std::tuple(model.technical.value(), page.value(), techPage.value()); },
        [this](const auto&) { showPage(); });
    Corvane::bind(
        *this, [&model] { return model.status.value().isOnline(); },
        [this](bool online) {
            veil->setVisible(!online);
            veil->raise();
        });
    Corvane::bind(
        *this, [this, &model] { return model.status.value().isOnline() && !locked.value(); },
        [this](bool takesInput) {
            if (!takesInput && keyboard) keyboard->leavePage();
            pages->setEnabled(takesInput);
        });
    // A drag would go on with the value of other speakers.
    Corvane::bind(
        *this, [&model] { return model.target.value(); },
        [this](const auto&) {
            for (QWidget* const each : pages->findChildren<QWidget*>())
                if (auto* const control = dynamic_cast<Kit::Control*>(each)) control->cancelInteraction();
        });
    new GestureFilter(*this, model.history);
    new Kit::Announcer(this);
    new Speech(model, *this);
    keyboard = new Keyboard(model, {*this, *header, *strip, *pages, *veil}, {page, techPage, locked},
                            [this] { showDiagnostics(); });
}

bool ContentView::focusNextPrevChild(bool next) { return keyboard->moveFocus(next); }

void ContentView::showDiagnostics() {
    if (!diagnostics) diagnostics = new DiagnosticsWindow(model, this);
    diagnostics->show();
    diagnostics->raise();
    diagnostics->activateWindow();
}

int ContentView::headHeight() const { return pages->y(); }

QWidget* ContentView::simplePage(Page which) {
    switch (which) {
    case Page::tone:
        return new ToneView(model, pages);
    case Page::dynamics:
        return new DynamicsView(model, pages);
    case Page::delay:
        return new DelayView(model, pages);
    }
    return nullptr;
}

// The toolkit would give the focus to a control of the next page.
void ContentView::showPage() {
    if (QWidget* const focused = QApplication::focusWidget(); focused && pages->isAncestorOf(focused))
        focused->clearFocus();
    if (model.technical.value()) {
        if (!technicalPages) {
            technicalPages = new TechPageView(model, pages);
            pages->addWidget(technicalPages);
        }
        technicalPages->setPage(techPage.value());
        pages->setCurrentWidget(technicalPages);
        return;
    }
    QWidget*& shown = built[page.value()];
    if (!shown) {
        shown = simplePage(page.value());
        pages->addWidget(shown);
    }
    pages->setCurrentWidget(shown);
}

void ContentView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    for (const QRect& part : event->region()) {
        painter.setClipRect(part);
        Kit::drawBackdrop(painter, rect());
    }
}

void ContentView::resizeEvent(QResizeEvent*) {
    const Room room = Room::in(size());
    header->setRoom(room);
    strip->setRoom(room);
    layout()->activate();
    veil->setGeometry(pages->geometry());
    reportLine->settle();
}

}  // namespace Corvane
