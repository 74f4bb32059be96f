#include "tests/ui/pages/desk.hpp"

#include "ui/kit/eqgraph.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/wellmenu.hpp"

#include <gtest/gtest.h>

#include <QLineEdit>

#include <cmath>
#include <limits>

using namespace Tests;

namespace {

/// A user at the rows of an output.
struct Rows : Desk {
    Rows() {
        connectByHand();
        model->technical = true;
        click("OUT 1");
    }

    /// Into an opened field; nothing is committed.
    void type(const QString& field, const QString& text) {
        auto& scrub = find<Kit::ScrubField>(field);
        QTest::mouseDClick(&scrub, Qt::LeftButton);
        QTest::keyClicks(scrub.findChild<QLineEdit*>(), text);
    }

    void enter(const QString& field, const QString& text, Qt::Key end = Qt::Key_Return) {
        type(field, text);
        QTest::keyClick(find<Kit::ScrubField>(field).findChild<QLineEdit*>(), end);
        settle();
    }

    PeqValue band(int number) { return held<PeqValue>(0, ModuleKind::peq, "Out0", number - 1); }
};

}  // namespace

TEST(PeqRowTest, TypedNumbersReachTheBoardWithinTheirLimits) {
    Rows rows;
    struct Case {
        const char* field;
        const char* typed;
        double value;
    };
    for (const auto& [field, typed, value] : {
             Case{"Banda 3, frequência", "2,5k", 2500},
             Case{"Banda 3, frequência", "50k", 22000},
             Case{"Banda 3, frequência", "3", 20},
             Case{"Banda 3, Q", "0,1", 0.3},
             Case{"Banda 3, Q", "1.234", 1.23},
             Case{"Banda 3, Q", "99", 50},
             Case{"Banda 3, ganho", "-3,5 dB", -3.5},
             Case{"Banda 3, ganho", "40", 12},
             Case{"Banda 3, ganho", "abc", 12},
         }) {
        rows.enter(field, typed);
        EXPECT_NEAR(rows.value(field), value, 1e-5) << typed;
        EXPECT_FALSE(rows.find<Kit::ScrubField>(field).isEditing());
    }
    const PeqValue held = rows.band(3);
    EXPECT_EQ(held.fc, 20U);
    EXPECT_EQ(held.q, 50);
    EXPECT_EQ(held.gain, 12);
}

TEST(PeqRowTest, EscapeKeepsTheValueAndALostFocusCommits) {
    Rows rows;
    rows.enter("Banda 1, frequência", "333", Qt::Key_Escape);
    EXPECT_NE(rows.value("Banda 1, frequência"), 333);
    rows.type("Banda 1, frequência", "444");
    rows.find<Kit::ScrubField>("Banda 2, Q").setFocus();
    rows.settle();
    EXPECT_EQ(rows.band(1).fc, 444U);
}

TEST(PeqRowTest, AFieldIsScrubbedAndTheHandleFollows) {
    Rows rows;
    const double before = rows.value("Banda 6, frequência");
    rows.dragUp("Banda 6, frequência", 90);
    EXPECT_NEAR(rows.value("Banda 6, frequência"), 2 * before, 1);
    const auto handle = rows.all<Kit::EQGraph>().at(0)->shownHandles().at(5);
    EXPECT_EQ(handle.fc, rows.value("Banda 6, frequência"));
}

TEST(PeqRowTest, TheTypeIsChosenFromAMenuAndOneThatIsUnknownHasNoTitle) {
    Rows rows;
    auto& menu = rows.find<Kit::MenuButton>("Banda 4, tipo");
    EXPECT_EQ(menu.valueText(), "PEQ");
    QTest::keyClick(&menu, Qt::Key_Down);
    rows.settle();
    EXPECT_EQ(menu.valueText(), "Low shelf");
    EXPECT_EQ(rows.band(4).type, std::uint8_t(PeqType::lowShelf));
    rows.model->set(K7Q::index(ModuleKind::peq, "Out0", 3), ModuleValue{PeqValue{100, 0, 1, 77, false}});
    EXPECT_EQ(menu.valueText(), "");
    rows.enter("Banda 4, ganho", "2");
    EXPECT_EQ(rows.band(4).type, 77) << "an edit of another field keeps it";
}

TEST(PeqRowTest, WhateverABoardReportsIsShownAndAnEditMakesItLegal) {
    Rows rows;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    rows.model->set(K7Q::index(ModuleKind::peq, "Out0", 0), ModuleValue{PeqValue{0, nan, nan, 0, false}});
    rows.model->set(K7Q::index(ModuleKind::peq, "Out0", 1),
                    ModuleValue{PeqValue{4000000000, infinite, 0, 2, false}});
    EXPECT_FALSE(rows.view.grab().isNull());
    const auto& graph = *rows.all<Kit::EQGraph>().at(0);
    for (const auto& handle : graph.shownHandles())
        EXPECT_TRUE(QRectF(graph.rect()).adjusted(-5, -5, 5, 5).contains(graph.placeOf(handle))) << handle.id;
    rows.click("Banda 1");
    rows.click("Banda 2");
    EXPECT_EQ(rows.band(1), (PeqValue{0, 0, 3, 0, true}));
    EXPECT_EQ(rows.band(2).gain, 12);
    EXPECT_EQ(rows.band(2).q, 0.3F);
}

TEST(PeqRowTest, TheWheelOverAHandleChangesItsQuality) {
    Rows rows;
    auto& graph = *rows.all<Kit::EQGraph>().at(0);
    graph.onTurn(2, 8);
    EXPECT_NEAR(rows.value("Banda 3, Q"), 6, 1e-5);
    graph.onTurn(2, 80);
    EXPECT_EQ(rows.value("Banda 3, Q"), 50);
}

TEST(FilterRowTest, EditsItsFilterWhole) {
    Rows rows;
    rows.enter("HPF, frequência", "80");
    rows.click("HPF");
    auto& slope = rows.find<Kit::MenuButton>("HPF, inclinação");
    EXPECT_EQ(slope.valueText(), "Bessel 12 dB");
    QTest::keyClick(&slope, Qt::Key_Down);
    rows.settle();
    EXPECT_EQ(rows.held<FilterValue>(0, ModuleKind::hpf, "Out0"), (FilterValue{80, 8, false}));
    EXPECT_EQ(rows.held<FilterValue>(0, ModuleKind::lpf, "Out0"), (FilterValue{22000, 3, true}));
    EXPECT_TRUE(rows.lit("HPF"));
}
