#include "tests/ui/pages/desk.hpp"

#include "Wendril/filtermath.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/theme.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <set>

using namespace Tests;
using Kind = ModuleKind;

TEST(EqualiserTest, ADraggedHandleMovesItsBandAtOnceAndReachesTheBoard) {
    Desk desk("OUT 2");
    Kit::EQGraph& graph = desk.graph();
    const auto before = graph.shownCurves();
    const QPointF to(graph.plot().x(1500), graph.plot().y(5));
    Hand::mouse(graph, QEvent::MouseButtonPress, graph.placeOf(graph.shownHandles().at(4)));
    Hand::mouse(graph, QEvent::MouseMove, to);
    EXPECT_NEAR(desk.number("Banda 5, frequência"), 1500, 8);
    EXPECT_EQ(desk.readOut("Banda 5, ganho"), "+5.0 dB");
    EXPECT_LT((graph.placeOf(graph.shownHandles().at(4)) - to).manhattanLength(), 1);
    EXPECT_NE(graph.shownCurves(), before);
    Hand::mouse(graph, QEvent::MouseButtonRelease, to);
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
    desk.set(Kind::peq, "Out0", 1, {PeqValue{90, 3, 2, 0, true}});
    const auto levelAt = [&desk](double hz) {
        const auto& freqs = Kit::EQPlot::freqs();
        const auto at = std::ranges::lower_bound(freqs, hz) - freqs.begin();
        return desk.graph().shownCurves().at(0).db.at(std::size_t(at));
    };
    const auto& handles = desk.graph().shownHandles();
    ASSERT_EQ(handles.size(), 10U);
    for (const auto& [band, label, fc, gain, dimmed] :
         {std::tuple{9, "10", 500., 6., false}, {1, "2", 90., 3., true}}) {
        const auto& handle = handles.at(std::size_t(band));
        EXPECT_EQ(std::tuple(handle.id, handle.label, handle.fc, handle.gain, handle.color, handle.dimmed),
                  std::tuple(band, label, fc, gain, Theme::accent, dimmed));
        EXPECT_EQ(handle.description.contains("desligada"), dimmed);
        EXPECT_NEAR(levelAt(fc), dimmed ? 0 : gain, 0.1);
    }
    desk.set(Kind::hpf, "Out0", 0, {FilterValue{500, 7, false}});
    EXPECT_NEAR(levelAt(500), 6 - 3, 0.3);
    EXPECT_TRUE(desk.graph().shownCurves().at(0).fill);
}

TEST(EqualiserTest, TheCrossoverPageShowsACurveForEachOutput) {
    Desk desk("X-OVER");
    const auto before = desk.graph().shownCurves();
    ASSERT_EQ(before.size(), 4U);
    EXPECT_TRUE(desk.graph().shownHandles().empty());
    desk.set(Kind::lpf, "Out2", 0, {FilterValue{200, 9, false}});
    const QColor colors[] = {Theme::accent, Theme::rgb(0.95, 0.30, 0.75), Theme::rgb(1.0, 0.78, 0.20),
                             Theme::rgb(0.35, 0.75, 1.0)};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& curve = desk.graph().shownCurves().at(i);
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
            desk.press(menu, i < 0 ? Qt::Key_Up : Qt::Key_Down);
        }
        EXPECT_EQ(codes.size(), 14U);
    }
    for (const auto& [title, code] : {std::pair{"PEQ", 0}, {"Low shelf", 1}, {"High shelf", 2}}) {
        EXPECT_EQ(desk.readOut("Banda 4, tipo"), title);
        EXPECT_EQ(desk.held<PeqValue>(0, Kind::peq, "Out0", 3).type, code);
        desk.press("Banda 4, tipo", Qt::Key_Down);
    }
}

TEST(EqualiserTest, WhatABoardReportsIsShownAndAnEditMakesItLegal) {
    Desk desk("OUT 1");
    const float nan = std::numeric_limits<float>::quiet_NaN();
    desk.set(Kind::peq, "Out0", 0, {PeqValue{0, nan, nan, 77, false}});
    desk.set(Kind::peq, "Out0", 1, {PeqValue{4000000000, 1 / 0.F, 0, 2, false}});
    EXPECT_FALSE(desk.view.grab().isNull());
    EXPECT_EQ(desk.readOut("Banda 1, tipo"), "") << "a code without a name";
    desk.click("Banda 1");
    QTest::mouseDClick(&desk.find<Kit::ScrubField>("Banda 2, frequência"), Qt::LeftButton);
    QTest::keyClicks(QApplication::focusWidget(), "50k\r");
    desk.settle();
    EXPECT_EQ(desk.held<PeqValue>(0, Kind::peq, "Out0", 0), (PeqValue{0, 0, 3, 77, true}));
    EXPECT_EQ(desk.held<PeqValue>(0, Kind::peq, "Out0", 1), (PeqValue{22000, 12, 0.3F, 2, false}));
}
