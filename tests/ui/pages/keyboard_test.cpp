#include "tests/ui/pages/desk.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/announcer.hpp"
#include "ui/kit/numbereditor.hpp"
#include "ui/kit/taborder.hpp"

#include <gtest/gtest.h>

#include <QAccessible>

#include <set>
#include <tuple>

using namespace Tests;

namespace {

constexpr Qt::KeyboardModifiers none = {};

/// What has been announced. An announcement is spoken when the announcer appears.
struct Announced : QObject {
    explicit Announced(const QWidget& window) {
        for (QWidget* const each : window.findChildren<QWidget*>())
            if (dynamic_cast<Kit::Announcement*>(each)) each->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show) said << static_cast<QWidget*>(watched)->accessibleName();
        return false;
    }

    QStringList said;
};

/// A user who presses keys only, on what has the focus.
struct KeyboardDesk : Desk {
    using Desk::Desk;

    int count = 0;

    void keys(std::initializer_list<Qt::Key> list, Qt::KeyboardModifiers held = none) {
        for (const Qt::Key key : list) {
            QWidget* const focused = QApplication::focusWidget();
            press(focused ? *focused : static_cast<QWidget&>(view), key, held);
            ++count;
        }
    }
    QString focused() const {
        const QWidget* const widget = QApplication::focusWidget();
        return widget ? Kit::fullName(*widget) : QString();
    }
};

/// Whether screen readers can do with it what its role promises.
bool fitsItsRole(QAccessibleInterface& reader) {
    using Action = QAccessibleActionInterface;
    const QAccessible::State state = reader.state();
    const QStringList actions = reader.actionInterface()->actionNames();
    switch (reader.role()) {
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
        return state.checkable && actions.contains(Action::toggleAction());
    case QAccessible::Button:
        return !state.checkable && actions.contains(Action::pressAction());
    case QAccessible::PageTab:
        return state.selectable && actions.contains(Action::pressAction());
    case QAccessible::Dial:
    case QAccessible::Slider:
    case QAccessible::SpinBox:
        return reader.valueInterface() && actions.contains(Action::increaseAction());
    case QAccessible::ComboBox:
        return state.expandable && reader.childCount() > 0 && actions.contains(Action::showMenuAction());
    case QAccessible::Chart:
        return reader.childCount() > 0 && reader.child(0)->valueInterface();
    default:
        return reader.role() == QAccessible::Graphic || reader.role() == QAccessible::EditableText;
    }
}

}  // namespace

TEST(KeyboardTest, EveryPageHasFewStopsWithNamesAndRolesOfTheirOwn) {
    KeyboardDesk desk("TOM", 3);
    QStringList titles{"TOM", "DINÂMICA", "DELAY"};
    for (const TechPage& page : TechPage::all)
        titles << page.title();
    for (const QString& title : titles) {
        desk.goTo(title);
        const std::vector<QWidget*> stops = Kit::tabOrder(desk.view);
        EXPECT_LE(stops.size(), title.startsWith("OUT") ? 20U : 40U) << qPrintable(title);
        std::set<QString> names;
        for (QWidget* const widget : desk.all<QWidget>()) {
            QAccessibleInterface& reader = *QAccessible::queryAccessibleInterface(widget);
            const QString name = reader.text(QAccessible::Name);
            const bool isReached = widget->focusPolicy() != Qt::NoFocus && widget->isEnabled();
            if (!isReached && !dynamic_cast<Kit::Control*>(widget)) continue;
            EXPECT_TRUE(!name.isEmpty() && names.insert(name).second) << qPrintable(title + ": " + name);
            if (!isReached) continue;
            EXPECT_TRUE(fitsItsRole(reader)) << qPrintable(title + ": " + name) << ", " << reader.role();
            reader.actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
            EXPECT_TRUE(widget->hasFocus()) << qPrintable(title + ": " + name);
        }
    }
}

// A chord counts as one key, as a letter does.
TEST(KeyboardTest, AShowIsSetUpBy52Keys) {
    KeyboardDesk desk({}, 2);
    desk.keys({Qt::Key_Return});
    ASSERT_TRUE(desk.until([&] { return desk.model->status.value().isOnline(); }));
    EXPECT_EQ(desk.focused(), desk.chip(1)) << "the first speaker";
    desk.keys({Qt::Key_2}, Qt::AltModifier);
    EXPECT_EQ(desk.model->target.value(), 2);
    desk.keys({Qt::Key_F6, Qt::Key_PageUp, Qt::Key_M});
    EXPECT_EQ(desk.model->tone(ToneBand::bass), 5);
    EXPECT_TRUE(desk.held<GainValue>(1, ModuleKind::gain, "In0").mute);
    desk.keys({Qt::Key_PageDown}, Qt::ControlModifier);
    EXPECT_EQ(desk.focused(), "Todas as saídas");
    desk.keys({Qt::Key_Right, Qt::Key_Right});
    EXPECT_EQ(desk.model->output.value(), 1);
    desk.keys({Qt::Key_3}, Qt::ControlModifier);
    desk.keys({Qt::Key_Tab, Qt::Key_Tab});
    desk.keys({Qt::Key_2, Qt::Key_Period, Qt::Key_5, Qt::Key_Return});
    EXPECT_FLOAT_EQ(desk.held<DelayValue>(1, ModuleKind::delay, "Out1").ms, 2.5F);

    desk.keys({Qt::Key_F6});
    desk.keys({Qt::Key_Return}, Qt::ControlModifier | Qt::AltModifier);
    desk.keys({Qt::Key_7}, Qt::ControlModifier);
    desk.keys({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_3, Qt::Key_Return});
    EXPECT_TRUE(dynamic_cast<Kit::NumberEditor*>(QApplication::focusWidget()));
    desk.keys({Qt::Key_1, Qt::Key_6, Qt::Key_0, Qt::Key_Tab});
    desk.keys({Qt::Key_1, Qt::Key_Period, Qt::Key_8, Qt::Key_Tab, Qt::Key_4, Qt::Key_Return});
    const auto band = desk.held<PeqValue>(1, ModuleKind::peq, "Out1", 2);
    EXPECT_EQ(std::tuple(band.fc, band.q, band.gain), std::tuple(160, 1.8F, 4));
    const auto slope = desk.held<FilterValue>(1, ModuleKind::hpf, "Out1").type;
    desk.keys({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Right, Qt::Key_Right});
    desk.keys({Qt::Key_Down, Qt::Key_Down}, Qt::ControlModifier);
    EXPECT_NE(desk.held<FilterValue>(1, ModuleKind::hpf, "Out1").type, slope);
    desk.keys({Qt::Key_S}, Qt::ControlModifier);
    desk.keys({Qt::Key_M, Qt::Key_E, Qt::Key_U, Qt::Key_1, Qt::Key_Return, Qt::Key_Tab, Qt::Key_Space});
    EXPECT_EQ(desk.model->devicePresets.value().at(1), "meu1")
        << "no key of the window acts while a text is typed";
    EXPECT_EQ(desk.model->currentPreset.value(), 1);

    desk.keys({Qt::Key_F6});
    desk.keys({Qt::Key_Return}, Qt::ControlModifier | Qt::AltModifier);
    desk.keys({Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space});
    EXPECT_EQ(desk.model->status.value().state, Status::Case::offline);
    EXPECT_EQ(desk.count, 52);
}

TEST(KeyboardTest, TellsWhatHappens) {
    KeyboardDesk desk({}, 2);
    Announced announced(desk.view);
    desk.goTo("TOM");
    for (const char* const text : {"Lendo a caixa 01…", "50%", "100%"})
        EXPECT_EQ(announced.said.count(text), 1) << text;
    announced.said.clear();
    desk.model->notice = "A caixa 01 parou de responder";
    desk.model->target = 2;
    auto& bass = desk.find<Kit::ValueControl>("Graves");
    bass.setFocus();
    desk.keys({Qt::Key_9, Qt::Key_9, Qt::Key_Return});
    EXPECT_EQ(announced.said,
              (QStringList{"A caixa 01 parou de responder", "Caixa " + desk.chip(2), "99 → +12.0 dB"}));
    announced.said.clear();
    desk.cable.lock()->cut(nullptr);
    desk.settle();
    EXPECT_EQ(announced.said.size(), 1);
    EXPECT_EQ(desk.focused(), "CONECTAR");
}
