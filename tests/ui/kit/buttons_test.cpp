#include "tests/ui/kit/hand.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/tabs.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/wellmenu.hpp"

#include <gtest/gtest.h>

#include <QMenu>

#include <memory>
#include <optional>

namespace {

/// A window with a button of one kind.
struct ButtonTest : testing::TestWithParam<int> {
    QWidget window;
    std::unique_ptr<Kit::Button> owned = make();
    Kit::Button& button = *owned;
    int count = 0;

    ButtonTest() {
        button.action = [this] { ++count; };
        Hand::showActive(window);
        const QEvent leave(QEvent::Leave);
        QApplication::sendEvent(&button, const_cast<QEvent*>(&leave));
    }

    std::unique_ptr<Kit::Button> make() {
        if (GetParam() == 0) return std::make_unique<Kit::LampSwitch>("Banda 1", &window);
        if (GetParam() == 1) return std::make_unique<Kit::IconButton>("xmark", "Fechar", 15, &window);
        if (GetParam() == 2) return std::make_unique<Kit::Tab>("TOM", Theme::text, 18, &window);
        return std::make_unique<Kit::PillButton>("MUDO", Kit::PillButton::Size::compact, &window);
    }

    void press() { Hand::mouse(button, QEvent::MouseButtonPress, {9, 9}); }
    void move(QPointF at) { Hand::mouse(button, QEvent::MouseMove, at); }
    void release(QPointF at = {9, 9}) { Hand::mouse(button, QEvent::MouseButtonRelease, at); }
};

INSTANTIATE_TEST_SUITE_P(AllButtons, ButtonTest, testing::Range(0, 4));

TEST_P(ButtonTest, ClickSpaceAndReturnActOnRelease) {
    press();
    EXPECT_EQ(count, 0);
    release();
    EXPECT_EQ(count, 1);
    QTest::mouseClick(&button, Qt::RightButton);
    EXPECT_EQ(count, 1);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_A})
        QTest::keyClick(&button, key);
    EXPECT_EQ(count, 4);
    EXPECT_FALSE(button.isChecked()) << "only the owner switches it on";
}

TEST_P(ButtonTest, APressThatIsInterruptedOrEndsElsewhereDoesNothing) {
    const QPointF outside(-9, 4);
    press(), move(outside), release(outside);
    EXPECT_EQ(count, 0) << "outside";
    press(), button.setEnabled(false), button.setEnabled(true), release();
    EXPECT_EQ(count, 0) << "disabled meanwhile";
    press(), button.hide(), button.show(), release();
    EXPECT_EQ(count, 0) << "hidden meanwhile";
    press(), QTest::keyRelease(&button, Qt::Key_Space), release(outside);
    EXPECT_EQ(count, 0) << "a key that was not pressed";
    button.setFocus(), QTest::keyPress(&button, Qt::Key_Space), button.clearFocus();
    QTest::keyRelease(&button, Qt::Key_Space);
    EXPECT_EQ(count, 0) << "the focus left";
    press(), move(outside), move({9, 9}), release();
    EXPECT_EQ(count, 1) << "came back";
}

TEST_P(ButtonTest, ItLooksDifferentWhileTheMouseIsOverItAndWhilePressed) {
    const QImage resting = Hand::picture(button);
    QEnterEvent enter({}, {}, {});
    QApplication::sendEvent(&button, &enter);
    const QImage hovered = Hand::picture(button);
    EXPECT_NE(hovered, resting);
    press();
    EXPECT_NE(Hand::picture(button), hovered);
    move({-9, 4});
    EXPECT_EQ(Hand::picture(button), hovered);
}

TEST(ButtonLookTest, WhatIsOnIsLitInTheAccentColour) {
    Kit::PillButton pill("MUDO", Kit::PillButton::Size::regular, nullptr);
    Kit::LampSwitch lamp("Banda 1", nullptr);
    Kit::Tab tab("TOM", Theme::text, 18, nullptr);
    pill.resize(pill.sizeHint());
    for (const bool on : {false, true, false}) {
        pill.setOn(on), lamp.setOn(on), tab.setSelected(on);
        for (Kit::Button* const button : std::initializer_list<Kit::Button*>{&pill, &lamp, &tab})
            EXPECT_EQ(Hand::shows(*button, Theme::accent), on);
        EXPECT_EQ(qAlpha(Hand::picture(pill, 2).pixel(4, 4)), 0) << "its glow stays in its bezel";
    }
}

TEST(ButtonLookTest, ADisabledControlAndAGivenOpacityAreFaint) {
    QWidget page;
    Kit::LampSwitch lamp("Banda 1", &page);
    lamp.setOpacity(0.55);
    const std::tuple<bool, bool, double> cases[] = {
        {true, true, 0.55}, {true, false, 0.22}, {false, true, 0.55}};
    for (const auto& [pageEnabled, lampEnabled, opacity] : cases) {
        page.setEnabled(pageEnabled), lamp.setEnabled(lampEnabled);
        EXPECT_NEAR(Hand::colorAt(lamp, {5, 11}).alphaF(), opacity, 0.01);
    }
}

TEST(PillButtonTest, KeepsItsWidthForItsTitlesAndItsNameFollowsThem) {
    Kit::PillButton button("ON", Kit::PillButton::Size::compact, nullptr);
    button.reserveFor({"ON", "OFF"});
    const QSize reserved = button.sizeHint();
    button.setTitle("OFF");
    EXPECT_EQ(button.sizeHint(), reserved);
    EXPECT_EQ(button.accessibleName(), "OFF");
    button.setAccessibleName("Delay");
    button.setTitle("ON");
    EXPECT_EQ(button.accessibleName(), "Delay") << "the owner's name stays";
}

TEST(TabsTest, ClicksAndArrowKeysSelectAndHidingPassesNoFocusOn) {
    QWidget window;
    Kit::Tabs tabs({"TOM", "DINÂMICA", "DELAY"}, Theme::text, 18, &window);
    const Kit::LampSwitch other("other", &window);
    std::vector<int> selected;
    tabs.onSelect = [&](int index) { selected.push_back(index), tabs.setSelected(index); };
    Hand::showActive(window);
    QWidget* const second = tabs.findChildren<QWidget*>().at(1);
    QTest::mouseClick(second, Qt::LeftButton);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
        QTest::keyClick(&tabs, key);
    EXPECT_EQ(selected, (std::vector{1, 2, 1})) << "the last tab has no right neighbour";
    EXPECT_TRUE(second->hasFocus());
    tabs.hide();
    EXPECT_FALSE(other.hasFocus());
}

/// A window with a menu.
struct Menu {
    QWidget window;
    std::unique_ptr<Kit::WellMenu<int>> button = std::make_unique<Kit::WellMenu<int>>(138, &window);
    std::optional<int> chosen;

    explicit Menu(int selection) {
        button->setOptions({{10, "PEQ"}, {20, "Low shelf"}, {30, "High shelf"}});
        button->setSelection(selection);
        button->onSelect = [this](int value) { chosen = value; };
        Hand::showActive(window);
    }

    static QMenu& list() { return *qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    void click(int row) {
        const QPoint entry = list().actionGeometry(list().actions().at(row)).center();
        QTest::mouseClick(&list(), Qt::LeftButton, {}, entry);
    }
    void choose(int row) {
        click(row);
        QApplication::processEvents();
    }
};

TEST(WellMenuTest, EachEntryReportsItsValueAndTheLabelStaysTheOwners) {
    for (const int row : {0, 1, 2}) {
        Menu menu(20);
        QTest::mouseClick(menu.button.get(), Qt::LeftButton);
        EXPECT_EQ(Menu::list().activeAction()->text(), "Low shelf");
        menu.choose(row);
        EXPECT_EQ(menu.chosen, 10 * (row + 1));
        EXPECT_EQ(menu.button->valueText(), "Low shelf");
    }
    Menu unknown(99);
    EXPECT_EQ(unknown.button->valueText(), "");
    QTest::keyClick(unknown.button.get(), Qt::Key_Space);
    EXPECT_EQ(Menu::list().actions().size(), 3);
    QTest::keyClick(&Menu::list(), Qt::Key_Escape);
    EXPECT_FALSE(unknown.chosen);
}

TEST(WellMenuTest, KeysChooseTheNeighbourAndTheWheelPassesOn) {
    const struct {
        int selection;
        Qt::Key key;
        std::optional<int> chosen;
    } cases[] = {
        {20, Qt::Key_Up, 10}, {20, Qt::Key_Down, 30}, {30, Qt::Key_Down, {}}, {99, Qt::Key_Down, 10}};
    for (const auto& c : cases) {
        Menu menu(c.selection);
        menu.button->setFocus();
        EXPECT_FALSE(Hand::wheel(*menu.button, {0, -120}));
        EXPECT_FALSE(menu.chosen);
        QTest::keyClick(menu.button.get(), c.key);
        EXPECT_EQ(menu.chosen, c.chosen) << c.selection << ' ' << c.key;
    }
}

TEST(WellMenuTest, ButtonAndWindowMayGoWhileTheListIsOpen) {
    Menu menu(10);
    menu.button->activate();
    menu.click(1);
    menu.button->setEnabled(false);
    QApplication::processEvents();
    EXPECT_FALSE(menu.chosen) << "disabled meanwhile";
    menu.button->setEnabled(true);
    menu.button->activate();
    menu.button.reset();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

}  // namespace
