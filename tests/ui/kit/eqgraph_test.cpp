#include "tests/ui/kit/hand.hpp"
#include "tests/ui/onscreen.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/theme.hpp"

#include <gtest/gtest.h>

namespace {

using Kit::EQGraph;

/// A graph whose owner takes over what the user does, as a page does. Its handles are called 1, 2, 3 and 10.
struct EQGraphTest : testing::Test {
    EQGraph graph{230, nullptr};
    std::vector<EQGraph::Handle> handles;
    int calls = 0;
    std::pair<int, double> turned;

    void show(const std::vector<QPointF>& places) {
        for (int id = 0; const QPointF& place : places) {
            const int label = id == 3 ? 10 : id + 1;
            handles.push_back({id++, QString::number(label), place.x(), place.y(), Theme::accent, false,
                               QStringLiteral("Banda %1").arg(label)});
        }
        graph.resize(640 + 40 + 18, graph.height());
        graph.onDrag = [this](int id, double fc, double gain) {
            ++calls;
            handles.at(id).fc = fc, handles.at(id).gain = gain;
            graph.setHandles(handles);
        };
        graph.onTurn = [this](int id, double notches) { turned = {id, notches}; };
        graph.setHandles(handles);
        Hand::showActive(graph);
    }

    QPointF placeOf(int id) const { return graph.placeOf(handles.at(id)); }
    void press(QPointF at) { Hand::mouse(graph, QEvent::MouseButtonPress, at); }
    void moveTo(QPointF at, Qt::KeyboardModifiers held = {}) {
        Hand::mouse(graph, QEvent::MouseMove, at, held);
    }
    void release(QPointF at) { Hand::mouse(graph, QEvent::MouseButtonRelease, at); }
    void drag(QPointF from, QPointF to) { press(from), moveTo(to), release(to); }
    QColor colorAt(double hz, double db) {
        return Hand::colorAt(graph, {graph.plot().x(hz), graph.plot().y(db)});
    }
};

TEST_F(EQGraphTest, FrequenciesAndLevelsHaveTheirPlaces) {
    show({{22000, 0}});
    const Kit::EQPlot plot = graph.plot();
    EXPECT_NEAR(plot.x(200), 40 + 640 / 3.0, 1e-9);
    EXPECT_NEAR(plot.y(6), 12 + 208 / 3.0, 1e-9);
    EXPECT_NEAR(placeOf(0).x(), 689, 1) << "just outside of the plot";
    EXPECT_EQ(Kit::EQPlot::drawnLevel(30), 21.6);
}

TEST_F(EQGraphTest, ADragOfTenPointsMovesTheHandleWithinTheRangesOfABand) {
    show({{1000, 0}});
    const QPointF start = placeOf(0);
    press(start), moveTo(start + QPointF(6, 6));
    EXPECT_EQ(calls, 0) << "less than a drag";
    moveTo({graph.plot().x(200), graph.plot().y(-6)}), moveTo(start + QPointF(2, 2));
    EXPECT_EQ(calls, 2) << "back near its start it is still a drag";
    release(start), moveTo(start + QPointF(60, 60));
    EXPECT_EQ(calls, 2);
    const std::tuple<QPointF, double, double> ends[] = {{{5000, -500}, 20000, 12}, {{-300, 5000}, 20, -12}};
    for (const auto& [to, fc, gain] : ends) {
        drag(placeOf(0), to);
        EXPECT_NEAR(handles[0].fc, fc, 1e-6);
        EXPECT_EQ(handles[0].gain, gain);
    }
}

TEST_F(EQGraphTest, WithoutAHandleUnderThePointerNothingMoves) {
    show({{1000, 0}, {4000, 0}});
    const QPointF start = placeOf(1);
    drag(start + QPointF(30, 0), {300, 100});
    press(start), graph.setHandles({handles[0]}), moveTo(start + QPointF(50, 0));
    EXPECT_EQ(calls, 0) << "the handle has gone";
    press(placeOf(0)), graph.setEnabled(false), graph.setEnabled(true), moveTo(start);
    EXPECT_EQ(calls, 0) << "disabled meanwhile";
}

TEST_F(EQGraphTest, TheHandleOnTopIsTakenFirstAndFurtherClicksReachThoseBelow) {
    show({{1000, 3}, {1000, 3}, {1000, 3}, {1080, 3}});
    const QPointF spot = placeOf(0) - QPointF(5, 0);
    for (const int reached : {2, 1, 0, 2, 1}) {
        drag(spot, spot);
        EXPECT_EQ(graph.selection(), reached);
    }
    drag(spot, spot + QPointF(100, 0));
    EXPECT_GT(handles[1].fc, 1400) << "the selected one lies on top";
    const QPointF between = placeOf(2) + QPointF(8, 0);
    drag(between, between);
    EXPECT_EQ(graph.selection(), 3) << "nearer or not, it covers the other";
    EXPECT_TRUE(Hand::wheel(graph, {0, 240}, placeOf(1)));
    EXPECT_EQ(turned, std::pair(1, 2.0));
    graph.clearFocus();
    EXPECT_FALSE(Hand::wheel(graph, {0, 240}, placeOf(0)));
    EXPECT_EQ(graph.selection(), 1);
}

TEST_F(EQGraphTest, AFineDragIsRelativeAndNeverJumps) {
    show({{1000, 0}});
    const QPointF start = placeOf(0);
    const QPointF grip = start + QPointF(6, 4);
    press(grip);
    const std::tuple<QPointF, Qt::KeyboardModifiers, QPointF> moves[] = {
        {{50, -20}, Qt::ShiftModifier, {10, -4}},
        {{50, -20}, {}, {10, -4}},
        {{80, -20}, {}, {40, -4}},
        {{80, -30}, Qt::AltModifier, {40, -6}}};
    for (const auto& [pointer, held, handle] : moves) {
        moveTo(grip + pointer, held);
        EXPECT_LT((placeOf(0) - start - handle).manhattanLength(), 0.01) << pointer.x() << ' ' << held;
    }
}

TEST_F(EQGraphTest, ADoubleClickOrHomeSetsTheGainToZero) {
    show({{1000, 6}, {1000, 6}, {4000, 6}});
    const auto clickTwice = [this](QPointF spot) {
        drag(spot, spot), Hand::mouse(graph, QEvent::MouseButtonDblClick, spot), release(spot);
    };
    clickTwice(placeOf(2));
    EXPECT_EQ(handles[2].gain, 0);
    clickTwice(placeOf(0));
    EXPECT_EQ(graph.selection(), 0) << "two clicks, which reach the handle below";
    EXPECT_EQ(calls, 1);
    QTest::keyClick(&graph, Qt::Key_Home);
    EXPECT_EQ(handles[0].gain, 0);
}

TEST_F(EQGraphTest, ShowsWhatTheHandleInUseDoesAndNothingAtRest) {
    show({{100, -9}, {1000, 9}});
    handles[0].readOut = "A";
    graph.setHandles(handles);
    graph.curveOf = [](int id) { return std::vector<double>(320, id == 0 ? -15 : 15); };
    const QImage rest = Hand::picture(graph);
    moveTo({graph.plot().x(5000), graph.plot().y(-6)});
    EXPECT_GT(colorAt(5000, 3).alpha(), 50) << "the cross";
    moveTo(placeOf(0));
    EXPECT_TRUE(OnScreen::shows(graph, "A"));
    EXPECT_GT(colorAt(4567, -15).alpha(), 120) << "the curve of its filter";
    Hand::leave(graph);
    EXPECT_FALSE(OnScreen::shows(graph, "A"));
    EXPECT_EQ(Hand::picture(graph), rest);
    graph.select(1), graph.clearFocus();
    const QPointF ring = placeOf(1) - QPointF(0, 11);
    EXPECT_GT(Hand::colorAt(graph, ring).alpha(), 90) << "still selected";
}

TEST_F(EQGraphTest, KeysSelectAHandleAndMoveIt) {
    using enum Qt::Key;
    const double raised = 4000 * std::exp2(1 / 24.0);
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int selected;
        double fc, gain;
    } cases[] = {{Key_Right, Qt::ControlModifier, 1, 4000, 11.8},
                 {Key_Up, {}, 1, 4000, 12},
                 {Key_Right, {}, 1, raised, 12},
                 {Key_3, {}, 2, 20, 0},
                 {Key_Left, {}, 2, 20, 0},
                 {Key_Right, Qt::ShiftModifier, 2, 21, 0},
                 {Key_Down, Qt::AltModifier, 2, 21, -0.1},
                 {Key_BracketLeft, {}, 1, raised, 12},
                 {Key_0, {}, 3, 22000, 2},
                 {Key_Up, {}, 3, 22000, 2.5},
                 {Key_BracketRight, {}, 0, 1000, 0}};
    show({{1000, 0}, {4000, 11.8}, {20, 0}, {22000, 2}});
    graph.clearFocus(), graph.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(graph.selection(), 0) << "the keyboard needs a handle to move";
    for (const auto& c : cases) {
        QTest::keyClick(&graph, c.key, c.modifiers);
        ASSERT_EQ(graph.selection(), c.selected) << c.key;
        EXPECT_NEAR(handles[c.selected].fc, c.fc, 1e-6) << c.key;
        EXPECT_NEAR(handles[c.selected].gain, c.gain, 1e-9) << c.key;
    }
    QTest::keyClick(&graph, Key_PageDown);
    EXPECT_EQ(turned, std::pair(0, -1.0));
    graph.onDrag = nullptr;
    QTest::keyClick(&graph, Key_Up);
    graph.setHandles({});
    EXPECT_EQ(graph.selection(), std::nullopt);
}

TEST_F(EQGraphTest, GrowsAsAWholeAndFollowsThePointerThen) {
    show({{1000, 6}, {4000, -6}});
    const QPointF usual = placeOf(0);
    const auto& tag = [this]() -> QWidget& { return OnScreen::find<QWidget>(graph, "A"); };
    handles[0].readOut = "A";
    graph.setHandles(handles);
    moveTo(usual);
    const QSize usualTag = tag().size();
    Hand::leave(graph);
    graph.setGrowth(2);
    graph.setFixedHeight(2 * graph.height());
    graph.resize(2 * graph.width(), graph.height());
    EXPECT_EQ(placeOf(0), usual * 2);
    EXPECT_EQ(Hand::colorAt(graph, placeOf(0) - QPointF(15, 0)).rgb(), Theme::accent.rgb());
    moveTo(placeOf(0) + QPointF(22, 0));
    EXPECT_NEAR(tag().width(), usualTag.width() * 2, 1) << "within reach";
    const QPointF wanted(600, 150);
    drag(placeOf(0), wanted);
    EXPECT_LT((placeOf(0) - wanted).manhattanLength(), 0.01);
    graph.setCurves({{"SAÍDA 1", Theme::accent, std::vector<double>(320, -12)}});
    const QPointF curve = QPointF(graph.plot().x(650), graph.plot().y(-12)) * 2;
    int wide = 0;
    for (int y = -5; y <= 5; ++y)
        wide += Hand::colorAt(graph, curve + QPointF(0, y)).rgb() == Theme::accent.rgb();
    EXPECT_GE(wide, 3);
}

TEST_F(EQGraphTest, LinesOfAKindAreEquallyBrightAtEachRatio) {
    show({});
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        QImage image((QSizeF(graph.size()) * ratio).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::black);
        graph.render(&image, {}, {}, QWidget::DrawChildren);
        const int row = int(graph.plot().y(3) * ratio);
        const auto brightest = [&](double hz) {
            const int at = int(graph.plot().x(hz) * ratio);
            int most = 0;
            for (int x = at - 2; x <= at + 2; ++x)
                most = std::max(most, qGray(image.pixel(x, row)));
            return most;
        };
        for (const double hz : {300, 400, 500, 600, 700, 800, 900})
            EXPECT_NEAR(brightest(hz), brightest(200), 1) << hz << " Hz at " << ratio;
    }
}

TEST_F(EQGraphTest, DrawsAndTellsWhatItShows) {
    show({{100, -9}, {10000, -9}});
    EXPECT_EQ(graph.part(1).name, "Banda 2");
    handles[1].dimmed = true;
    graph.setHandles(handles);
    const auto draw = [&](double level, bool fill) {
        graph.setCurves({{"SAÍDA 1", Theme::accent, std::vector<double>(320, level), fill}});
        EXPECT_EQ(colorAt(650, level).rgb(), Theme::accent.rgb());
        return colorAt(650, level / 2).saturation();
    };
    EXPECT_GT(draw(6, true), 200) << "shaded to 0 dB";
    EXPECT_EQ(colorAt(650, -3).saturation(), 0);
    EXPECT_EQ(draw(-6, false), 0) << "not shaded";
    EXPECT_GT(colorAt(95, -9).saturation(), 200);
    EXPECT_LT(colorAt(9500, -9).saturation(), 20) << "dimmed";
    EXPECT_GT(colorAt(650, 0).value(), colorAt(650, 6).value() + 10) << "the line of 0 dB";
    EXPECT_GT(colorAt(1000, -15).alpha(), colorAt(2000, -15).alpha() + 10) << "a decade";
}

}  // namespace
