#pragma once

#include "tests/app/rig.hpp"
#include "tests/ui/kit/hand.hpp"
#include "tests/ui/pages/onscreen.hpp"

#include "ui/kit/button.hpp"
#include "Wendril/fields.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/valuecontrol.hpp"
#include "ui/pages/shell/contentview.hpp"

#include <QStackedWidget>

/// For messages of failed tests.
inline void PrintTo(const QString& text, std::ostream* out) { *out << qPrintable(text); }

namespace Tests {

/// A user at the window, with simulated speakers in virtual time.
struct Desk : Rig {
    explicit Desk(std::size_t boards = 1)
        : Rig(chainOf(boards)) {
        Hand::showActive(view);
    }

    template <class Widget = Kit::Button>
    Widget& find(const QString& name) {
        return OnScreen::find<Widget>(view, name);
    }
    template <class Widget>
    std::vector<Widget*> all() {
        return OnScreen::all<Widget>(view);
    }
    bool shows(const QString& name) {
        return std::ranges::count(all<QWidget>(), name, &QWidget::accessibleName) > 0;
    }

    void click(QWidget& control) {
        QTest::mouseClick(&control, Qt::LeftButton);
        settle();
    }
    void click(const QString& name) { click(find(name)); }

    void press(const QString& control, Qt::Key key) {
        QTest::keyClick(&find<Kit::Control>(control), key);
        settle();
    }

    /// Lets everything that is queued reach the speakers.
    void settle() { time.advance(2s); }

    /// Clicks CONECTAR and waits for the speakers.
    void connectByHand() {
        click("CONECTAR");
        ASSERT_TRUE(until([this] { return model->status.value().isOnline(); }));
        port->sent.clear();
    }

    /// Online at the page with that tab, of either mode.
    void goTo(const QString& tab) {
        if (!model->status.value().isOnline()) connectByHand();
        model->technical = tab != "TOM" && tab != "DINÂMICA" && tab != "DELAY";
        click(tab);
    }
    QWidget& page() { return *view.findChild<QStackedWidget*>()->currentWidget(); }
    Kit::EQGraph& graph() { return *all<Kit::EQGraph>().at(0); }

    double value(const QString& name) { return find<Kit::ValueControl>(name).value(); }
    QString readOut(const QString& name) { return find<Kit::Control>(name).valueText(); }
    QString chip(int position) {
        const std::string& model = speaker(std::size_t(position))->info.value().model;
        return QString("0%1 · ").arg(position + 1) + QString::fromStdString(model);
    }
    bool lit(const QString& name) { return find(name).isChecked(); }

    void set(ModuleKind kind, std::string_view channel, int band, const ModuleValue& value) {
        model->set(K7Q::index(kind, channel, band), value);
    }
    template <class Case>
    Case held(std::size_t board, ModuleKind kind, std::string_view channel, int band = 0) {
        return *line->board(board).value(K7Q::index(kind, channel, band)).template as<Case>();
    }

    /// What the first board has been told to set since the last call, as "GAIN/In0 db=0 mute=1 …".
    QStringList written() {
        QStringList list;
        for (const Sent& sent : std::exchange(port->sent, {}))
            if (sent.is(Fun::moduleSet) && sent.address == 1)
                list << QString::fromStdString(labelOf(*K7Q::module(sent.module)) + " " +
                                               fieldsText(line->board(0).value(sent.module)));
        return list;
    }

    ContentView view{*model, true, nullptr};
};

}  // namespace Tests
