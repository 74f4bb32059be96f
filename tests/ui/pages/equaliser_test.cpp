#include "tests/ui/pages/desk.hpp"

#include "Wendril/filtermath.hpp"
#include "ui/kit/theme.hpp"
#include "ui/pages/technical/peqrow.hpp"

#include <gtest/gtest.h>

#include <QClipboard>

#include <cmath>
#include <set>

using namespace Tests;
using Kind = ModuleKind;

TEST(EqualiserTest, ADraggedHandleMovesItsBandAtOnceAndReachesTheBoard) {
    Desk desk("OUT 2");
    Kit::EQGraph& graph = desk.graph();
    Hand::mouse(graph, QEvent::MouseButtonPress, graph.placeOf(graph.shownHandles().at(4)));
    Hand::mouse(graph, QEvent::MouseMove, {graph.plot().x(1500), graph.plot().y(5)});
    EXPECT_NEAR(desk.number("Banda 5, frequência"), 1500, 8);
    EXPECT_EQ(desk.readOut("Banda 5, ganho"), "+5.0 dB");
    desk.settle();
    EXPECT_EQ(desk.held<PeqValue>(0, Kind::peq, "Out1", 4).fc, desk.number("Banda 5, frequência"));
    graph.onTurn(2, 8);
    EXPECT_NEAR(desk.number("Banda 3, Q"), 6, 1e-5) << "eight notches of the wheel are an octave";
    graph.onTurn(2, 80);
    EXPECT_EQ(desk.number("Banda 3, Q"), 50);
}

TEST(EqualiserTest, HandlesAndCurveShowTheBandsAndTheCrossover) {
    Desk desk("OUT 1");
    desk.set(Kind::peq, "Out0", 9, {PeqValue{500, 6, 2, 0, false}});
    desk.set(Kind::peq, "Out0", 0, {PeqValue{90, 9, 2, 0, true}});
    const auto& handles = desk.graph().shownHandles();
    ASSERT_EQ(handles.size(), 10U);
    EXPECT_EQ(handles[9].description, "Banda 10: 500 Hz, +6.0 dB, Q 2.00");
    EXPECT_EQ(handles[0], (Kit::EQGraph::Handle{0, "1", 90, 9, Theme::accent, true, "Banda 1",
                                                "Banda 1: 90 Hz, +9.0 dB, Q 2.00, desligada",
                                                "90 Hz · +9.0 dB · Q 2.00"}));
    const auto& curve = desk.graph().shownCurves().at(0);
    EXPECT_NEAR(std::ranges::max(curve.db), 6, 0.1) << "without the band that is off";
    desk.set(Kind::peq, "Out0", 0, {PeqValue{90, 9, 2, 0, false}});
    desk.set(Kind::hpf, "Out0", 0, {FilterValue{500, 7, false}});
    EXPECT_LT(desk.graph().shownCurves().at(0).db.front(), -60);
    EXPECT_TRUE(desk.graph().shownCurves().at(0).fill);
}

TEST(EqualiserTest, TheCrossoverPageShowsACurveForEachOutput) {
    Desk desk("X-OVER");
    const auto before = desk.graph().shownCurves();
    ASSERT_EQ(before.size(), 4U);
    desk.set(Kind::lpf, "Out2", 0, {FilterValue{200, 9, false}});
    const QColor colors[] = {Theme::accent, Theme::rgb(0.95, 0.30, 0.75), Theme::rgb(1.0, 0.78, 0.20),
                             Theme::rgb(0.35, 0.75, 1.0)};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& curve = desk.graph().shownCurves()[i];
        EXPECT_EQ(curve.db == before[i].db, i != 2);
        EXPECT_EQ(curve, (Kit::EQGraph::Curve{QString("SAÍDA %1").arg(i + 1), colors[i], curve.db, false}));
    }
}

TEST(EqualiserTest, MenuEntriesSendTheirOwnCodes) {
    Desk desk("OUT 1");
    for (const auto& [menu, kind] :
         {std::pair{"HPF, inclinação", Kind::hpf}, {"LPF, inclinação", Kind::lpf}}) {
        std::set<int> codes;
        for (int i = -14; i < 14; ++i) {
            const std::uint8_t code = desk.held<FilterValue>(0, kind, "Out0").type;
            EXPECT_EQ(desk.readOut(menu), FilterMath::slopeName(code).c_str());
            codes.insert(code);
            desk.press(desk.find(menu), i < 0 ? Qt::Key_Up : Qt::Key_Down, Qt::ControlModifier);
        }
        EXPECT_EQ(codes.size(), 14U);
    }
    for (const auto& [title, code] : {std::pair{"PEQ", 0}, {"Low shelf", 1}, {"High shelf", 2}}) {
        EXPECT_EQ(desk.readOut("Banda 4, tipo"), title);
        EXPECT_EQ(desk.held<PeqValue>(0, Kind::peq, "Out0", 3).type, code);
        desk.press(desk.find("Banda 4, tipo"), Qt::Key_Down, Qt::ControlModifier);
    }
    desk.set(Kind::peq, "Out0", 3, {PeqValue{0, std::nanf(""), std::nanf(""), 77, false}});
    EXPECT_EQ(desk.readOut("Banda 4, tipo"), "") << "a code without a name";
    EXPECT_FALSE(desk.view.grab().isNull()) << "nor numbers";
}

TEST(EqualiserTest, GraphAndTableShareTheSelectionAndTheBandUnderThePointer) {
    Desk desk("OUT 1");
    const auto rows = desk.all<PeqRow>();
    const auto chosen = [&rows](auto is) { return std::ranges::find_if(rows, is) - rows.begin(); };
    QTest::mouseClick(rows.at(4), Qt::LeftButton, {}, {10, 3});
    EXPECT_EQ(desk.graph().selection(), 4);
    EXPECT_TRUE(desk.graph().hasFocus());
    desk.graph().select(7);
    EXPECT_EQ(chosen(&PeqRow::isSelected), 7);
    EXPECT_GT(Hand::colorAt(*rows[7], {32, 2}).saturation(), 200);
    EXPECT_EQ(Hand::colorAt(*rows[4], {32, 2}).saturation(), 0);
    Hand::mouse(desk.graph(), QEvent::MouseMove, desk.graph().placeOf(desk.graph().shownHandles()[2]));
    EXPECT_EQ(chosen(&PeqRow::isMarked), 2);
}

TEST(EqualiserTest, ABandAndAWholeEqualiserCanBeCopied) {
    Desk desk("OUT 1");
    const PeqValue band{160, 7.8F, 1.78F, 1, true};
    desk.set(Kind::peq, "Out0", 2, {band});
    desk.set(Kind::peq, "Out0", 9, {band});
    const auto key = [&desk](const char* keys) {
        desk.graph().setFocus();
        QTest::keySequence(&desk.graph(), QKeySequence(keys));
        desk.settle();
    };
    const auto at = [&desk](const char* channel, int number) {
        return desk.held<PeqValue>(0, Kind::peq, channel, number);
    };
    QGuiApplication::clipboard()->setText("160 Hz");
    desk.graph().select(2), key("Ctrl+V");
    EXPECT_TRUE(desk.model->notice.value()) << "nothing was copied";
    key("Ctrl+C"), desk.graph().select(5), key("Ctrl+V");
    EXPECT_EQ(at("Out0", 5), band);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "160 Hz · +7.8 dB · Q 1.78");

    key("Ctrl+Shift+C"), desk.goTo("OUT 3");
    key("Ctrl+Shift+V");
    EXPECT_EQ(at("Out2", 2), band);
    EXPECT_EQ(at("Out2", 9), band);
    desk.goTo("IN 2"), key("Ctrl+Shift+V");
    EXPECT_EQ(at("In1", 2), band);
    EXPECT_EQ(desk.model->notice.value(), "As bandas 5 a 10 ficaram de fora: ENTRADA 2 tem 4 bandas");
}
