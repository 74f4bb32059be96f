#include "tests/ui/kit/hand.hpp"
#include "ui/kit/analogvu.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/wellmenu.hpp"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleActionInterface>

namespace {

QAccessibleInterface& reader(QWidget& control) { return *QAccessible::queryAccessibleInterface(&control); }

TEST(AccessibilityTest, EveryControlHasNameRoleAndValue) {
    Kit::Knob knob("Graves", {-12, 12}, 0, 0.5, Formats::signedDecibels, {}, nullptr);
    Kit::Fader fader("Entrada", {-60, 6}, 0, Formats::decibels, {.levels = 2}, nullptr);
    Kit::ScrubField field("Frequência", {20, 22000}, Formats::formatHz, {.step = 1, .logarithmic = true},
                          nullptr);
    Kit::AnalogVU meter("ENTRADA L", -18, nullptr);
    Kit::PillButton pill("MUDO", Kit::PillButton::Size::regular, nullptr);
    Kit::LampSwitch lamp("Banda 1", nullptr);
    Kit::IconButton icon("xmark", "Fechar", 15, nullptr);
    Kit::WellMenu<int> menu(96, nullptr);
    menu.setAccessibleName("Tipo");
    menu.setOptions({{1, "PEQ"}});
    menu.setSelection(1);
    Kit::Panel panel("VOLUME", nullptr);
    Kit::Caption caption("Desconectado", Theme::font(13), Theme::text, nullptr);
    const struct {
        QWidget& control;
        QAccessible::Role role;
        const char* name;
        const char* value;
    } cases[] = {
        {knob, QAccessible::Dial, "Graves", "+0.0 dB"},
        {fader, QAccessible::Slider, "Entrada", "0.0 dB"},
        {field, QAccessible::SpinBox, "Frequência", "20 Hz"},
        {meter, QAccessible::Indicator, "ENTRADA L", "-inf VU"},
        {pill, QAccessible::Button, "MUDO", ""},
        {lamp, QAccessible::CheckBox, "Banda 1", ""},
        {icon, QAccessible::Button, "Fechar", ""},
        {menu, QAccessible::ComboBox, "Tipo", "PEQ"},
        {panel, QAccessible::Grouping, "VOLUME", ""},
        {caption, QAccessible::StaticText, "Desconectado", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(reader(c.control).role(), c.role) << c.name;
        EXPECT_EQ(reader(c.control).text(QAccessible::Name), c.name);
        EXPECT_EQ(reader(c.control).text(QAccessible::Value), c.value) << c.name;
    }
    Kit::OutputMeters outputs(4, 300, nullptr);
    int bars = 0;
    for (const QWidget* const parent : std::initializer_list<QWidget*>{&fader, &outputs})
        for (QWidget* const child : parent->findChildren<QWidget*>())
            if (auto* const bar = dynamic_cast<Kit::MeterBar*>(child)) {
                EXPECT_FALSE(reader(*bar).text(QAccessible::Name).isEmpty());
                ++bars;
            }
    EXPECT_EQ(bars, 6);
}

TEST(AccessibilityTest, AScreenReaderCanOperateTheControls) {
    Kit::Knob knob("Graves", {-12, 12}, 0, 0.5, Formats::signedDecibels, {}, nullptr);
    knob.onChange = [&](double value) { knob.setValue(value); };
    QAccessibleValueInterface* const value = reader(knob).valueInterface();
    ASSERT_NE(value, nullptr);
    value->setCurrentValue(40);
    EXPECT_EQ(value->currentValue(), 12.0);
    QAccessibleActionInterface* const action = reader(knob).actionInterface();
    action->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(knob.value(), 11.5);
    knob.setEnabled(false);
    action->doAction(QAccessibleActionInterface::decreaseAction());
    value->setCurrentValue(0);
    EXPECT_EQ(knob.value(), 11.5) << "disabled";

    Kit::PillButton pill("MUDO", Kit::PillButton::Size::regular, nullptr);
    int clicks = 0;
    pill.action = [&] { ++clicks; };
    const QString toggle = reader(pill).actionInterface()->actionNames().value(0);
    reader(pill).actionInterface()->doAction(toggle);
    EXPECT_EQ(clicks, 1);
    pill.setOn(true);
    EXPECT_TRUE(reader(pill).state().checked);
}

TEST(AccessibilityTest, TheRingShowsHowTheFocusWasReached) {
    QWidget window;
    window.resize(300, 200);
    Kit::PillButton key("MUDO", Kit::PillButton::Size::regular, &window);
    key.resize(key.sizeHint());
    QWidget other(&window);
    other.setFocusPolicy(Qt::StrongFocus);
    Hand::showActive(window);
    other.setFocus();
    const QImage resting = Hand::picture(key, 1);
    key.setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(Hand::picture(key, 1), resting);
    other.setFocus();
    key.setFocus(Qt::TabFocusReason);
    EXPECT_NE(Hand::picture(key, 1), resting);
    other.setFocus();
    EXPECT_EQ(Hand::picture(key, 1), resting);
}

}  // namespace
