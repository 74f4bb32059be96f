#include "tests/ui/pages/desk.hpp"

#include "Wendril/filtermath.hpp"
#include "ui/kit/scrubfield.hpp"

#include <gtest/gtest.h>

#include <QLineEdit>

#include <limits>

using namespace Tests;
using Kind = ModuleKind;

TEST(EqualiserTest, ADraggedHandleMovesItsBandAtOnceAndReachesTheBoard) {
    Desk desk;
    desk.goTo("OUT 2");
    Kit::EQGraph& graph = desk.graph();
    const auto before = graph.shownCurves();
    const QPointF to(graph.plot().x(1500), graph.plot().y(5));
    Hand::mouse(graph, QEvent::MouseButtonPress, graph.placeOf(graph.shownHandles().at(4)));
    Hand::mouse(graph, QEvent::MouseMove, to);
    EXPECT_NEAR(desk.value("Banda 5, frequência"), 1500, 8);
    EXPECT_EQ(desk.readOut("Banda 5, ganho"), "+5.0 dB");
    EXPECT_LT((graph.placeOf(graph.shownHandles().at(4)) - to).manhattanLength(), 1);
    EXPECT_NE(graph.shownCurves(), before);
    Hand::mouse(graph, QEvent::MouseButtonRelease, to);
    desk.settle();
    const auto held = desk.held<PeqValue>(0, Kind::peq, "Out1", 4);
    EXPECT_NEAR(held.gain, 5, 0.1);
    EXPECT_EQ(held.fc, desk.value("Banda 5, frequência"));
    EXPECT_EQ(desk.written().size(), 1);
    graph.onTurn(2, 8);
    EXPECT_NEAR(desk.value("Banda 3, Q"), 6, 1e-5) << "eight notches of the wheel are an octave";
    graph.onTurn(2, 80);
    EXPECT_EQ(desk.value("Banda 3, Q"), 50);
}

TEST(EqualiserTest, HandlesAndCurveShowTheBandsAndTheCrossover) {
    Desk desk;
    desk.goTo("OUT 1");
    desk.set(Kind::peq, "Out0", 9, {PeqValue{500, 6, 2, 0, false}});
    desk.set(Kind::peq, "Out0", 1, {PeqValue{90, 3, 2, 0, true}});
    const auto levelAt = [&desk](double hz) {
        const auto& freqs = Kit::EqPlot::freqs();
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
    EXPECT_LT(levelAt(30), -60);
    EXPECT_TRUE(desk.graph().shownCurves().at(0).fill);
}

TEST(EqualiserTest, TheCrossoverPageShowsACurveForEachOutput) {
    Desk desk;
    desk.goTo("X-OVER");
    const auto before = desk.graph().shownCurves();
    ASSERT_EQ(before.size(), 4U);
    EXPECT_TRUE(desk.graph().shownHandles().empty());
    desk.set(Kind::lpf, "Out2", 0, {FilterValue{200, 9, false}});
    const QColor colors[] = {Theme::accent, Theme::rgb(0.95, 0.30, 0.75), Theme::rgb(1.0, 0.78, 0.20),
                             Theme::rgb(0.35, 0.75, 1.0)};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto& curve = desk.graph().shownCurves().at(i);
        EXPECT_EQ(curve.db == before[i].db, i != 2);
        EXPECT_EQ(curve.id, QString("SAÍDA %1").arg(i + 1));
        EXPECT_EQ(curve.color, colors[i]);
        EXPECT_FALSE(curve.fill);
    }
}

TEST(EqualiserTest, MenuEntriesSendTheirOwnCodes) {
    std::vector<std::pair<std::string, int>> slopes;
    for (const auto& [code, name] : FilterMath::slopes)
        slopes.emplace_back(name, code);
    Desk desk;
    desk.goTo("OUT 1");
    const std::tuple<const char*, std::uint8_t, std::vector<std::pair<std::string, int>>> menus[] = {
        {"Banda 4, tipo",
         K7Q::index(Kind::peq, "Out0", 3),
         {{"PEQ", 0}, {"Low shelf", 1}, {"High shelf", 2}}},
        {"HPF, inclinação", K7Q::index(Kind::hpf, "Out0", 0), slopes},
        {"LPF, inclinação", K7Q::index(Kind::lpf, "Out0", 0), slopes}};
    for (const auto& [menu, module, entries] : menus) {
        for (std::size_t i = 0; i < entries.size(); ++i)
            desk.press(menu, Qt::Key_Up);
        for (const auto& [title, code] : entries) {
            EXPECT_EQ(desk.readOut(menu), title.c_str());
            const std::string held = fieldsText(desk.line->board(0).value(module));
            EXPECT_NE(held.find("type=" + std::to_string(code) + " "), std::string::npos)
                << title << ": " << held;
            desk.press(menu, Qt::Key_Down);
        }
    }
    desk.set(Kind::peq, "Out0", 3, {PeqValue{100, 0, 1, 77, false}});
    EXPECT_EQ(desk.readOut("Banda 4, tipo"), "") << "a code without a name";
}

TEST(EqualiserTest, WhatABoardReportsIsShownAndAnEditMakesItLegal) {
    Desk desk;
    desk.goTo("OUT 1");
    const float nan = std::numeric_limits<float>::quiet_NaN();
    desk.set(Kind::peq, "Out0", 0, {PeqValue{0, nan, nan, 77, false}});
    desk.set(Kind::peq, "Out0", 1, {PeqValue{4000000000, 1 / 0.F, 0, 2, false}});
    desk.settle();
    desk.written();
    EXPECT_FALSE(desk.view.grab().isNull());
    desk.click("Banda 1");
    QTest::mouseDClick(&desk.find<Kit::ScrubField>("Banda 2, frequência"), Qt::LeftButton);
    QTest::keyClicks(QApplication::focusWidget(), "50k\r");
    desk.settle();
    EXPECT_EQ(desk.written(), (QStringList{"PEQ/Out0/0 fc=0 gain=0 q=3 type=77 bypass=1",
                                           "PEQ/Out0/1 fc=22000 gain=12 q=0.3 type=2 bypass=0"}));
}
