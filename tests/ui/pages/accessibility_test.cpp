#include "tests/ui/kit/frames.hpp"
#include "tests/ui/pages/desk.hpp"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAccessibleActionInterface>

using namespace Tests;
using Action = QAccessibleActionInterface;

namespace {

QAccessibleInterface& reader(QWidget& control) { return *QAccessible::queryAccessibleInterface(&control); }

}  // namespace

TEST(AccessibilityTest, EveryControlHasItsRoleAndEveryMeterTheValueOfItsChannel) {
    const struct {
        const char *page, *name;
        QAccessible::Role role;
        const char* value = "";
        bool selected = false;
    } cases[] = {
        {"TOM", "Graves", QAccessible::Dial, "+0.0 dB"},
        {"TOM", "Entrada", QAccessible::Slider, "0.0 dB"},
        {"TOM", "Entrada, nível 2", QAccessible::ProgressBar, "-15.0 dB"},
        {"TOM", "ENTRADA R", QAccessible::ProgressBar, "3 VU"},
        {"TOM", "Nível, Saída 1", QAccessible::ProgressBar, "—"},
        {"TOM", "-20.0 dB", QAccessible::StaticText},
        {"DINÂMICA", "Nível, Saída 4", QAccessible::ProgressBar, "-50.0 dB"},
        {"MAIN", "In 2, nível 1", QAccessible::ProgressBar, "-15.0 dB"},
        {"OUT 3", "SAÍDA 3, nível 1", QAccessible::ProgressBar, "-40.0 dB"},
        {"TOM", "VOLUME", QAccessible::Grouping},
        {"DINÂMICA", "DINÂMICA", QAccessible::PageTab, "", true},
        {"DINÂMICA", "DELAY", QAccessible::PageTab},
        {"DELAY", "171.5 cm", QAccessible::StaticText},
        {"MAIN", "Preset", QAccessible::ComboBox, "1 · vazio"},
        {"MAIN", "Atualizar portas", QAccessible::Button},
        {"OUT 1", "Banda 1", QAccessible::CheckBox},
        {"OUT 1", "Banda 1, Q", QAccessible::SpinBox, "3.00"},
    };
    Frames frames;
    Desk desk("TOM");
    desk.set(ModuleKind::delay, "Out2", 0, {DelayValue{5, true}});
    for (const auto& c : cases) {
        desk.goTo(c.page);
        desk.model->meters = {-20, -15, -INFINITY, -20, -40, -50};
        frames.pass(400);
        auto& control = desk.find<QWidget>(c.name);
        EXPECT_EQ(reader(control).role(), c.role) << c.name;
        EXPECT_EQ(reader(control).text(QAccessible::Value), c.value) << c.name;
        const QString tip = control.toolTip() == c.name ? QString() : control.toolTip();
        EXPECT_EQ(reader(control).text(QAccessible::Description), tip + c.value) << c.name << ", once";
        EXPECT_EQ(reader(control).state().selected, c.selected) << c.name;
    }
    desk.goTo("DELAY");
    EXPECT_EQ(reader(desk.find("DELAY")).parent()->role(), QAccessible::PageTabList);
}

TEST(AccessibilityTest, AScreenReaderCanOperateTheControls) {
    Desk desk("TOM");
    auto& knob = desk.find<Kit::ValueControl>("Graves");
    QAccessibleValueInterface& value = *reader(knob).valueInterface();
    Action& action = *reader(knob).actionInterface();
    value.setCurrentValue(40);
    EXPECT_EQ(value.currentValue(), value.maximumValue());
    action.doAction(Action::decreaseAction());
    EXPECT_EQ(knob.value(), 11.5);
    knob.setEnabled(false);
    value.setCurrentValue(0);
    EXPECT_EQ(knob.value(), 11.5) << "disabled";

    QAccessibleInterface& mute = reader(desk.find("Mudo, Entrada"));
    mute.actionInterface()->doAction(Action::toggleAction());
    EXPECT_TRUE(mute.state().checked);
}
