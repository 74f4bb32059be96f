#include "tests/ui/kit/hand.hpp"
#include "ui/kit/analogvu.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/tabs.hpp"
#include "ui/kit/wellmenu.hpp"

#include "ui/kit/theme.hpp"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleActionInterface>

namespace {

QAccessibleInterface& reader(QWidget& control) { return *QAccessible::queryAccessibleInterface(&control); }

QWidget& child(QWidget& parent, const char* name) {
    for (QWidget* const each : parent.findChildren<QWidget*>())
        if (each->accessibleName() == name) return *each;
    throw std::runtime_error(name);
}

TEST(AccessibilityTest, EveryControlHasNameRoleAndValue) {
    Kit::Knob knob("Graves", {-12, 12}, 0, 0.5, Formats::signedDecibels, {}, nullptr);
    Kit::Fader fader("Entrada", {-60, 6}, 0, Formats::decibels, {.levels = 2}, nullptr);
    Kit::ScrubField field("Frequência", {20, 22000}, Formats::formatHz, {}, nullptr);
    Kit::AnalogVU meter("ENTRADA L", -18, nullptr);
    Kit::OutputMeters outputs(4, 300, nullptr);
    Kit::LampSwitch lamp("Banda 1", nullptr);
    Kit::IconButton icon("xmark", "Fechar", 15, nullptr);
    Kit::WellMenu<int> menu(96, nullptr);
    menu.setOptions({{1, "PEQ"}});
    menu.setSelection(1);
    Kit::Panel panel("VOLUME", nullptr);
    Kit::Caption caption("Desconectado", Theme::font(13), Theme::text, nullptr);
    Kit::Tabs tabs({"TOM", "DELAY"}, Theme::text, 18, nullptr);
    tabs.setSelected(1);
    const struct {
        QWidget& control;
        QAccessible::Role role;
        const char* name;
        const char* value = "";
        bool selected = false;
    } cases[] = {
        {knob, QAccessible::Dial, "Graves", "+0.0 dB"},
        {fader, QAccessible::Slider, "Entrada", "0.0 dB"},
        {child(fader, "Entrada, nível 2"), QAccessible::Indicator, "Entrada, nível 2", "—"},
        {field, QAccessible::SpinBox, "Frequência", "20 Hz"},
        {meter, QAccessible::Indicator, "ENTRADA L", "-inf VU"},
        {child(outputs, "Saída 4"), QAccessible::Indicator, "Saída 4", "—"},
        {lamp, QAccessible::CheckBox, "Banda 1"},
        {icon, QAccessible::Button, "Fechar"},
        {menu, QAccessible::ComboBox, "", "PEQ"},
        {panel, QAccessible::Grouping, "VOLUME"},
        {caption, QAccessible::StaticText, "Desconectado"},
        {tabs, QAccessible::PageTabList, ""},
        {child(tabs, "TOM"), QAccessible::PageTab, "TOM"},
        {child(tabs, "DELAY"), QAccessible::PageTab, "DELAY", "", true},
    };
    for (const auto& c : cases) {
        const QAccessibleInterface& control = reader(c.control);
        EXPECT_EQ(control.role(), c.role) << c.name;
        EXPECT_EQ(control.text(QAccessible::Name), c.name);
        EXPECT_EQ(control.text(QAccessible::Value), c.value) << c.name;
        EXPECT_EQ(control.text(QAccessible::Description), c.control.toolTip() + c.value) << c.name;
        EXPECT_EQ(control.state().selected, c.selected) << c.name;
    }
}

TEST(AccessibilityTest, AScreenReaderCanOperateTheControls) {
    Kit::Knob knob("Graves", {-12, 12}, 0, 0.5, Formats::signedDecibels, {}, nullptr);
    knob.onChange = [&](double value) { knob.setValue(value); };
    QAccessibleValueInterface& value = *reader(knob).valueInterface();
    QAccessibleActionInterface& action = *reader(knob).actionInterface();
    value.setCurrentValue(40);
    EXPECT_EQ(value.currentValue(), value.maximumValue());
    action.doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(knob.value(), 11.5);
    action.doAction(QAccessibleActionInterface::increaseAction());
    knob.setEnabled(false);
    action.doAction(QAccessibleActionInterface::decreaseAction());
    value.setCurrentValue(0);
    EXPECT_EQ(knob.value(), 12) << "disabled";

    Kit::PillButton pill("MUDO", Kit::PillButton::Size::regular, nullptr);
    pill.action = [&] { pill.setOn(true); };
    reader(pill).actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(reader(pill).state().checked);
}

}  // namespace
