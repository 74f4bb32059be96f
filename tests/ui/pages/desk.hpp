#pragma once

#include "tests/app/rig.hpp"
#include "tests/ui/kit/hand.hpp"
#include "tests/ui/onscreen.hpp"

#include "ui/kit/button.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/valuecontrol.hpp"
#include "ui/pages/shell/contentview.hpp"

#include <QStackedWidget>

/// For messages of failed tests.
// NOLINTNEXTLINE(readability-identifier-naming): the name that GoogleTest looks for
inline void PrintTo(const QString& text, std::ostream* out) { *out << qPrintable(text); }

namespace Tests {

/// A user at the window, with simulated speakers in virtual time.
struct Desk : Rig {
    /// Offline, or online at the page with that tab.
    explicit Desk(const QString& tab = {}, std::size_t boards = 1)
        : Rig(chainOf(boards)) {
        Hand::showActive(view);
        if (!tab.isEmpty()) goTo(tab);
    }

    template <class Widget = Kit::Button>
    Widget& find(const QString& name) {
        return OnScreen::find<Widget>(view, name);
    }
    template <class Widget>
    std::vector<Widget*> all() {
        return OnScreen::all<Widget>(view);
    }
    bool shows(const QString& name) const { return OnScreen::shows(view, name); }

    void click(QWidget& control) {
        QTest::mouseClick(&control, Qt::LeftButton);
        settle();
    }
    void click(const QString& name) { click(find(name)); }
    void press(const QString& control, Qt::Key key) { press(find<Kit::Control>(control), key); }
    void press(QWidget& control, Qt::Key key, Qt::KeyboardModifiers held = {}) {
        QTest::keyClick(&control, key, held);
        settle();
    }

    /// Lets everything that is queued reach the speakers.
    void settle() { time.advance(2s); }

    /// Connects if need be and goes to the page with that tab, of either mode.
    void goTo(const QString& tab) {
        if (!model->status.value().isOnline()) click("CONECTAR");
        ASSERT_TRUE(until([this] { return model->status.value().isOnline(); }));
        model->technical = tab != "TOM" && tab != "DINÂMICA" && tab != "DELAY";
        click(tab);
    }
    QWidget& page() { return *view.findChild<QStackedWidget*>()->currentWidget(); }
    Kit::EQGraph& graph() { return *all<Kit::EQGraph>().at(0); }

    double number(const QString& name) { return find<Kit::ValueControl>(name).value(); }
    QString readOut(const QString& name) { return find<Kit::Control>(name).valueText(); }
    QString chip(int number) {
        return QString("%1 · ").arg(number, 2, 10, QChar(u'0')) + speaker(0)->info.value().model.c_str();
    }
    bool lit(const QString& name) { return find(name).isChecked(); }

    void set(ModuleKind kind, std::string_view channel, int band, const ModuleValue& value) {
        model->set(K7Q::index(kind, channel, band), value);
    }
    template <class Case>
    Case held(std::size_t board, ModuleKind kind, std::string_view channel, int band = 0) {
        return *line->board(board).value(K7Q::index(kind, channel, band)).template as<Case>();
    }

    ContentView view{*model, true, nullptr};
};

}  // namespace Tests
