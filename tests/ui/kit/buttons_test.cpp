#include "tests/ui/kit/hand.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/wellmenu.hpp"

#include <gtest/gtest.h>

#include <QMenu>

#include <memory>
#include <optional>

namespace {

struct Pressed {
    QWidget window;
    std::unique_ptr<Kit::Button> key;
    int count = 0;

    explicit Pressed(int kind) {
        window.resize(200, 100);
        if (kind == 0)
            key = std::make_unique<Kit::PillButton>("MUDO", Kit::PillButton::Size::compact, &window);
        if (kind == 1) key = std::make_unique<Kit::LampSwitch>("Banda 1", &window);
        if (kind == 2) key = std::make_unique<Kit::IconButton>("xmark", "Fechar", 15, &window);
        key->action = [this] { ++count; };
        Hand::showActive(window);
    }

    QPointF centre() const { return QRectF(key->rect()).center(); }
};

class KeyTest : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(AllButtons, KeyTest, testing::Values(0, 1, 2));

TEST_P(KeyTest, ClickSpaceAndReturnActOnRelease) {
    Pressed pressed(GetParam());
    Kit::Button& key = *pressed.key;
    Hand::mouse(key, QEvent::MouseButtonPress, pressed.centre());
    EXPECT_EQ(pressed.count, 0);
    Hand::mouse(key, QEvent::MouseButtonRelease, pressed.centre());
    EXPECT_EQ(pressed.count, 1);
    QTest::mouseClick(&key, Qt::RightButton);
    EXPECT_EQ(pressed.count, 1);
    for (const Qt::Key name : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_A})
        QTest::keyClick(&key, name);
    EXPECT_EQ(pressed.count, 4);
    EXPECT_FALSE(key.isChecked()) << "the owner alone lights it";
}

TEST_P(KeyTest, LettingGoElsewhereDoesNothing) {
    Pressed pressed(GetParam());
    Kit::Button& key = *pressed.key;
    const auto press = [&] { Hand::mouse(key, QEvent::MouseButtonPress, pressed.centre()); };
    const auto release = [&](QPointF at) { Hand::mouse(key, QEvent::MouseButtonRelease, at); };
    const auto move = [&](QPointF at) { Hand::mouse(key, QEvent::MouseMove, at); };
    const QPointF outside(-9, 4);

    press(), move(outside), release(outside);
    EXPECT_EQ(pressed.count, 0) << "outside";
    press(), key.setEnabled(false), key.setEnabled(true), move(pressed.centre()), release(pressed.centre());
    EXPECT_EQ(pressed.count, 0) << "disabled meanwhile";
    press(), key.hide(), key.show(), move(pressed.centre()), release(pressed.centre());
    EXPECT_EQ(pressed.count, 0) << "hidden meanwhile";
    press(), QTest::keyRelease(&key, Qt::Key_Alt), QTest::keyRelease(&key, Qt::Key_Space);
    key.setFocus();
    EXPECT_EQ(pressed.count, 0) << "a key that was not pressed here";
    release(outside);
    QTest::keyPress(&key, Qt::Key_Space), key.clearFocus(), QTest::keyRelease(&key, Qt::Key_Space);
    EXPECT_EQ(pressed.count, 0) << "the focus left";
    press(), move(outside), move(pressed.centre()), release(pressed.centre());
    EXPECT_EQ(pressed.count, 1) << "came back";
}

struct Menu {
    QWidget window;
    std::unique_ptr<Kit::WellMenu<int>> menu = std::make_unique<Kit::WellMenu<int>>(138, &window);
    std::optional<int> chosen;

    explicit Menu(int selection) {
        menu->setOptions({{10, "PEQ"}, {20, "Low shelf"}, {30, "High shelf"}});
        menu->setSelection(selection);
        menu->onSelect = [this](int value) { chosen = value; };
        Hand::showActive(window);
    }

    static QMenu& list() { return *qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    void choose(int row) {
        QTest::mouseClick(&list(), Qt::LeftButton, {},
                          list().actionGeometry(list().actions().at(row)).center());
        QApplication::processEvents();
    }
};

TEST(WellMenuTest, ReportsTheChoiceAndKeepsShowingItsOwners) {
    Menu field(10);
    QTest::mouseClick(field.menu.get(), Qt::LeftButton);
    EXPECT_EQ(Menu::list().actions().size(), 3);
    EXPECT_EQ(Menu::list().activeAction()->text(), "PEQ");
    field.choose(2);
    EXPECT_EQ(field.chosen, 30);
    EXPECT_EQ(field.menu->valueText(), "PEQ");
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST(WellMenuTest, ShowsNothingForAnUnknownValueAndStillListsAll) {
    Menu field(99);
    EXPECT_EQ(field.menu->valueText(), "");
    QTest::keyClick(field.menu.get(), Qt::Key_Space);
    EXPECT_EQ(Menu::list().actions().size(), 3);
    QTest::keyClick(&Menu::list(), Qt::Key_Escape);
    EXPECT_FALSE(field.chosen);
    QTest::keyClick(field.menu.get(), Qt::Key_Down);
    EXPECT_EQ(field.chosen, 10);
}

TEST(WellMenuTest, KeyAndWindowMayGoWhileTheListIsOpen) {
    Menu field(10);
    field.menu->activate();
    field.menu->setEnabled(false);
    field.choose(1);
    EXPECT_FALSE(field.chosen) << "disabled meanwhile";
    field.menu->setEnabled(true);
    field.menu->activate();
    field.menu.reset();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST(WellMenuTest, AFullNotchOfTheWheelMovesByOne) {
    Menu field(20);
    Hand::wheel(*field.menu, -60);
    EXPECT_FALSE(field.chosen);
    Hand::wheel(*field.menu, -60);
    EXPECT_EQ(field.chosen, 30);
    Hand::wheel(*field.menu, 120);
    EXPECT_EQ(field.chosen, 10);
}

TEST(PillButtonTest, KeepsItsWidthForTheTitlesItIsToldOf) {
    Kit::PillButton key("ON", Kit::PillButton::Size::compact, nullptr);
    key.reserveFor({"ON", "OFF"});
    const QSize reserved = key.sizeHint();
    key.setTitle("OFF");
    EXPECT_EQ(key.sizeHint(), reserved);
}

}  // namespace
