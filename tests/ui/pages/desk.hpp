#pragma once

#include "tests/app/rig.hpp"
#include "tests/ui/kit/hand.hpp"

#include "ui/kit/button.hpp"
#include "ui/kit/valuecontrol.hpp"
#include "ui/pages/shell/contentview.hpp"

#include <QTest>

#include <stdexcept>

namespace Tests {

/// A user at the window, with simulated speakers in virtual time.
struct Desk : Rig {
    explicit Desk(const Simulator::LineOptions& options = chainOf(1))
        : Rig(options) {
        Hand::showActive(view);
    }

    /// What is on the screen under that name.
    template <class Widget = Kit::Button>
    Widget& find(const QString& name) {
        auto* const widget = seek<Widget>(name);
        if (!widget) throw std::runtime_error("nothing here is called " + name.toStdString());
        return *widget;
    }

    template <class Widget = Kit::Button>
    bool shows(const QString& name) {
        return seek<Widget>(name) != nullptr;
    }

    void click(const QString& name) {
        QTest::mouseClick(&find<Kit::Button>(name), Qt::LeftButton);
        settle();
    }

    void dragUp(const QString& name, int points) {
        Hand::drag(find<Kit::ValueControl>(name), {0, double(-points)});
        settle();
    }

    /// Presses CONECTAR and waits for the speakers.
    void connectByHand() {
        click("CONECTAR");
        ASSERT_TRUE(until([this] { return model->status.value().isOnline(); }));
        port->sent.clear();
    }

    /// Lets everything that is queued reach the speakers.
    void settle() { time.advance(2s); }

    double value(const QString& name) { return find<Kit::ValueControl>(name).value(); }
    QString readOut(const QString& name) { return find<Kit::ValueControl>(name).valueText(); }
    bool lit(const QString& name) { return find<Kit::Button>(name).isChecked(); }

    template <class Case>
    Case held(std::size_t board, ModuleKind kind, std::string_view channel, int band = 0) {
        return *line->board(board).value(K7Q::index(kind, channel, band)).template as<Case>();
    }

    ContentView view{*model, true, nullptr};

    /// All of a kind that are on the screen. The controls have no meta objects to tell them apart.
    template <class Widget>
    std::vector<Widget*> all() {
        std::vector<Widget*> list;
        for (QWidget* const each : view.findChildren<QWidget*>())
            if (auto* const widget = dynamic_cast<Widget*>(each); widget && widget->isVisible())
                list.push_back(widget);
        return list;
    }

private:
    template <class Widget>
    Widget* seek(const QString& name) {
        for (Widget* const widget : all<Widget>())
            if (widget->accessibleName() == name) return widget;
        return nullptr;
    }
};

}  // namespace Tests
