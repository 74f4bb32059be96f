#include "tests/ui/kit/hand.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/housestyle.hpp"
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

/// A window with a button of each kind.
struct ButtonTest : testing::Test {
    QWidget window;
    Kit::PillButton pill{"MUDO", Kit::PillButton::Size::regular, &window};
    Kit::LampSwitch lamp{"Banda 1", &window};
    Kit::Tab tab{"TOM", Theme::text, 18, &window};
    Kit::IconButton icon{"xmark", "Fechar", 15, &window};
    int count = 0;

    ButtonTest() {
        pill.action = [this] { ++count; };
        pill.resize(pill.sizeHint());
        Hand::showActive(window);
    }

    void press() { Hand::mouse(pill, QEvent::MouseButtonPress, {9, 9}); }
    void move(QPointF at) { Hand::mouse(pill, QEvent::MouseMove, at); }
    void release(QPointF at = {9, 9}) { Hand::mouse(pill, QEvent::MouseButtonRelease, at); }
};

TEST_F(ButtonTest, ClickSpaceAndReturnActOnRelease) {
    press();
    EXPECT_EQ(count, 0);
    release();
    EXPECT_EQ(count, 1);
    QTest::mouseClick(&pill, Qt::RightButton);
    EXPECT_EQ(count, 1);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_A})
        QTest::keyClick(&pill, key);
    EXPECT_EQ(count, 4);
}

TEST_F(ButtonTest, APressThatIsInterruptedOrEndsElsewhereDoesNothing) {
    const QPointF outside(-9, 4);
    press(), move(outside), release(outside);
    EXPECT_EQ(count, 0) << "outside";
    press(), pill.setEnabled(false), pill.setEnabled(true), release();
    EXPECT_EQ(count, 0) << "disabled meanwhile";
    press(), pill.hide(), pill.show(), release();
    EXPECT_EQ(count, 0) << "hidden meanwhile";
    press(), QTest::keyRelease(&pill, Qt::Key_Space), release(outside);
    EXPECT_EQ(count, 0) << "a key that was not pressed";
    pill.setFocus(), QTest::keyPress(&pill, Qt::Key_Space), pill.clearFocus();
    QTest::keyRelease(&pill, Qt::Key_Space);
    EXPECT_EQ(count, 0) << "the focus left";
    press(), move(outside), move({9, 9}), release();
    EXPECT_EQ(count, 1) << "came back";
}

TEST_F(ButtonTest, ItLooksDifferentWhileTheMouseIsOverItAndWhilePressed) {
    for (Kit::Button* const button : std::initializer_list<Kit::Button*>{&pill, &lamp, &tab, &icon}) {
        Hand::leave(*button);
        const QImage resting = Hand::picture(*button);
        Hand::enter(*button);
        const QImage hovered = Hand::picture(*button);
        EXPECT_NE(hovered, resting);
        Hand::mouse(*button, QEvent::MouseButtonPress, {9, 9});
        EXPECT_NE(Hand::picture(*button), hovered);
        Hand::mouse(*button, QEvent::MouseMove, {-9, 4});
        EXPECT_EQ(Hand::picture(*button), hovered);
    }
}

TEST_F(ButtonTest, WhatIsOnIsLitAndWhatIsDisabledIsFaint) {
    for (const bool on : {true, false}) {
        pill.setOn(on), lamp.setOn(on), tab.setSelected(on);
        for (Kit::Button* const button : std::initializer_list<Kit::Button*>{&pill, &lamp, &tab})
            EXPECT_EQ(Hand::shows(*button, Theme::accent), on);
    }
    lamp.setOpacity(0.55);
    const std::tuple<bool, bool, double> cases[] = {{true, false, 0.22}, {false, true, 0.55}};
    for (const auto& [windowEnabled, lampEnabled, opacity] : cases) {
        window.setEnabled(windowEnabled), lamp.setEnabled(lampEnabled);
        EXPECT_NEAR(Hand::colorAt(lamp, {5, 11}).alphaF(), opacity, 0.01);
    }
}

TEST(ReservedWidthTest, AButtonAndACaptionKeepTheirWidthForOtherTexts) {
    Kit::PillButton button("ON", Kit::PillButton::Size::compact, nullptr);
    Kit::Caption caption("Pronto", Theme::font(13), Theme::secondary, nullptr);
    button.reserveFor({"ON", "OFF"}), caption.reserveFor("-88.8 dB");
    const std::pair reserved(button.sizeHint(), caption.sizeHint());
    button.setTitle("OFF"), caption.setText("Erro");
    EXPECT_EQ(std::pair(button.sizeHint(), caption.sizeHint()), reserved);
}

TEST(TabsTest, ArrowKeysSelectANeighbourAndHidingPassesNoFocusOn) {
    QWidget window;
    Kit::Tabs tabs({"TOM", "DINÂMICA", "DELAY"}, Theme::text, 18, &window);
    const Kit::LampSwitch other("other", &window);
    std::vector<int> selected;
    tabs.onSelect = [&](int index) { selected.push_back(index), tabs.setSelected(index); };
    Hand::showActive(window);
    tabs.setSelected(0);
    tabs.findChildren<QWidget*>().at(0)->setFocus();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
        QTest::keyClick(window.focusWidget(), key);
    EXPECT_EQ(selected, (std::vector{1, 2, 1})) << "the last tab has no right neighbour";
    EXPECT_TRUE(tabs.findChildren<QWidget*>().at(1)->hasFocus());
    tabs.hide();
    EXPECT_FALSE(other.hasFocus());
}

/// A window with a menu.
struct MenuTest : testing::Test {
    QWidget window;
    std::unique_ptr<Kit::WellMenu<int>> button = std::make_unique<Kit::WellMenu<int>>(138, &window);
    std::optional<int> chosen;

    MenuTest() {
        button->setOptions({{10, "PEQ"}, {20, "Low shelf"}, {30, "High shelf"}});
        button->setSelection(20);
        button->onSelect = [this](int value) { chosen = value; };
        Hand::showActive(window);
    }

    static QMenu& list() { return *qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

    // By keys: later releases of the toolkit ignore a click right after the list has opened.
    static void choose(int row) {
        list().setActiveAction(list().actions().at(row));
        QTest::keyClick(&list(), Qt::Key_Return);
    }
};

TEST_F(MenuTest, EachEntryReportsItsValueAndTheLabelStaysTheOwners) {
    button->setFocus();
    EXPECT_FALSE(Hand::wheel(*button, {0, -120})) << "it belongs to the page";
    QTest::keyClick(button.get(), Qt::Key_Space);
    QTest::keyClick(&list(), Qt::Key_Escape);
    EXPECT_FALSE(chosen);
    button->setSelection(99);
    QTest::keyClick(button.get(), Qt::Key_Down);
    EXPECT_EQ(chosen, 10) << "from an unknown value to the first";
    button->setSelection(20);
    for (const int row : {0, 1, 2}) {
        QTest::mouseClick(button.get(), Qt::LeftButton);
        EXPECT_EQ(list().activeAction()->text(), "Low shelf");
        choose(row);
        QApplication::processEvents();
        EXPECT_EQ(chosen, 10 * (row + 1));
        EXPECT_EQ(button->valueText(), "Low shelf");
    }
}

TEST_F(MenuTest, AListIsAsLargeAsItsButton) {
    static Kit::HouseStyle house;
    const auto sizeAt = [this](double growth) {
        button->setGrowth(growth);
        button->setFixedWidth(int(138 * growth));
        button->activate();
        list().setStyle(&house);
        list().ensurePolished();
        const QSizeF size = list().sizeHint();
        QTest::keyClick(&list(), Qt::Key_Escape);
        QApplication::processEvents();
        return size;
    };
    const QSizeF usual = sizeAt(1);
    const QSizeF large = sizeAt(1.5);
    EXPECT_NEAR(large.width(), usual.width() * 1.5, 6);
    EXPECT_NEAR(large.height(), usual.height() * 1.5, 6);
}

TEST_F(MenuTest, ButtonAndWindowMayGoWhileTheListIsOpen) {
    button->activate();
    choose(1);
    button->setEnabled(false);
    QApplication::processEvents();
    EXPECT_FALSE(chosen) << "disabled meanwhile";
    button->setEnabled(true);
    button->activate();
    button.reset();
    QApplication::processEvents();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

}  // namespace
