#include "tests/ui/kit/hand.hpp"

#include "ui/kit/eqgraph.hpp"
#include "ui/kit/theme.hpp"

#include <gtest/gtest.h>

#include <QKeyEvent>

#include <limits>
#include <memory>

namespace {

using Kit::EQGraph;

/// A graph whose owner keeps what the user does, as a page would.
struct Graph {
    explicit Graph(std::vector<EQGraph::Handle> handles = {})
        : kept(std::move(handles)) {
        view.resize(640 + 40 + 18, view.height());
        view.onDrag = [this](int id, double fc, double gain) {
            ++calls;
            for (auto& handle : kept)
                if (handle.id == id) {
                    handle.fc = fc;
                    handle.gain = gain;
                }
            view.setHandles(kept);
        };
        view.onTurn = [this](int id, double notches) {
            turned = id;
            notchesTurned += notches;
        };
        view.setHandles(kept);
        Hand::showActive(view);
    }

    QPointF placeOf(std::size_t i) const { return view.placeOf(kept.at(i)); }
    void press(QPointF at) { Hand::mouse(view, QEvent::MouseButtonPress, at); }
    void moveTo(QPointF at) { Hand::mouse(view, QEvent::MouseMove, at); }
    void release(QPointF at) { Hand::mouse(view, QEvent::MouseButtonRelease, at); }
    void click(QPointF at) {
        press(at);
        release(at);
    }
    void drag(QPointF from, QPointF to) {
        press(from);
        moveTo(to);
        release(to);
    }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&view, Qt::Key(key), modifiers);
    }

    EQGraph view{230, nullptr};
    std::vector<EQGraph::Handle> kept;
    int calls = 0;
    std::optional<int> turned;
    double notchesTurned = 0;
};

EQGraph::Handle handle(int id, double fc, double gain) {
    return {.id = id,
            .label = QString::number(id + 1),
            .fc = fc,
            .gain = gain,
            .color = Theme::accent,
            .description = QStringLiteral("Banda %1").arg(id + 1)};
}

}  // namespace

TEST(EQGraphTest, FrequenciesAndLevelsHaveTheirPlaces) {
    const Kit::EQPlot plot{QRectF(40, 18, 600, 208)};
    EXPECT_NEAR(plot.x(20), 40, 1e-9);
    EXPECT_NEAR(plot.x(20000), 640, 1e-9);
    EXPECT_NEAR(plot.x(200), 240, 1e-9);
    EXPECT_NEAR(plot.y(18), 18, 1e-9);
    EXPECT_NEAR(plot.y(0), 18 + 104, 1e-9);
    EXPECT_NEAR(plot.y(-18), 18 + 208, 1e-9);
    EXPECT_NEAR(plot.y(6), 18 + 104 * 2 / 3.0, 1e-9);
    for (const double hz : {20.0, 437.0, 20000.0})
        EXPECT_NEAR(plot.hz(plot.x(hz)), hz, 1e-6);
    for (const double db : {-18.0, -2.5, 18.0})
        EXPECT_NEAR(plot.db(plot.y(db)), db, 1e-9);
    ASSERT_EQ(Kit::EQPlot::freqs().size(), 320U);
    EXPECT_NEAR(plot.x(Kit::EQPlot::freqs().back()), 640, 1e-6);
}

TEST(EQGraphTest, TheGraphsOwnAreaIsAsHighAsAskedAndTheLabelsStandInIt) {
    const Graph graph;
    EXPECT_EQ(graph.view.plot().area, QRectF(40, 18, 640, 230 - 22));
}

TEST(EQGraphTest, LevelsFarOutsideAreDrawnJustOutside) {
    EXPECT_EQ(Kit::EQPlot::drawnLevel(30), 21.6);
    EXPECT_EQ(Kit::EQPlot::drawnLevel(-120), -21.6);
    EXPECT_EQ(Kit::EQPlot::drawnLevel(-20), -20);
    EXPECT_EQ(Kit::EQPlot::drawnLevel(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(EQGraphTest, ADraggedHandleFollowsThePointer) {
    Graph graph({handle(0, 1000, 0)});
    const QPointF start = graph.placeOf(0);
    graph.press(start);
    graph.moveTo(start + QPointF(6, 6));
    EXPECT_EQ(graph.calls, 0) << "less than a drag";
    const QPointF target(graph.view.plot().x(200), graph.view.plot().y(-6));
    graph.moveTo(target);
    EXPECT_NEAR(graph.kept[0].fc, 200, 0.01);
    EXPECT_NEAR(graph.kept[0].gain, -6, 0.01);
    graph.moveTo(start + QPointF(2, 2));
    EXPECT_EQ(graph.calls, 2) << "back near its start it is still a drag";
    graph.release(start);
    graph.moveTo(target);
    EXPECT_EQ(graph.calls, 2);
}

TEST(EQGraphTest, ADragStopsAtTheLimits) {
    struct Case {
        QPointF to;
        double fc;
        double gain;
    };
    for (const auto& [to, fc, gain] : {Case{{5000, -500}, 20000, 12}, Case{{-300, 5000}, 20, -12}}) {
        Graph graph({handle(0, 1000, 0)});
        graph.drag(graph.placeOf(0), to);
        EXPECT_NEAR(graph.kept[0].fc, fc, 1e-6);
        EXPECT_EQ(graph.kept[0].gain, gain);
    }
}

TEST(EQGraphTest, WhereNothingIsAHandleNothingMoves) {
    Graph graph({handle(0, 1000, 0)});
    graph.drag(graph.placeOf(0) + QPointF(30, 0), {300, 100});
    graph.view.onDrag = nullptr;
    graph.drag(graph.placeOf(0), {300, 100});
    EXPECT_EQ(graph.calls, 0);
    EXPECT_EQ(graph.view.selection(), std::nullopt);
}

TEST(EQGraphTest, OfHandlesOnEachOtherEachCanBeReached) {
    Graph graph({handle(0, 1000, 3), handle(1, 1000, 3), handle(2, 1000, 3), handle(3, 8000, 0)});
    const QPointF spot = graph.placeOf(0);
    std::vector<int> reached;
    for (int i = 0; i < 4; ++i) {
        graph.click(spot);
        reached.push_back(graph.view.selection().value());
    }
    EXPECT_EQ(reached, (std::vector{0, 1, 2, 0}));
    graph.click(spot);
    graph.drag(spot, spot + QPointF(100, 0));
    EXPECT_EQ(graph.kept[0].fc, 1000);
    EXPECT_GT(graph.kept[1].fc, 1500) << "the chosen one is dragged";
    EXPECT_EQ(graph.kept[2].fc, 1000);
}

TEST(EQGraphTest, TheNearestHandleIsTaken) {
    Graph graph({handle(0, 1000, 0), handle(1, 1060, 0)});
    graph.click(graph.placeOf(1) + QPointF(2, 0));
    EXPECT_EQ(graph.view.selection(), 1);
    graph.click(graph.placeOf(0) - QPointF(5, 0));
    EXPECT_EQ(graph.view.selection(), 0);
}

TEST(EQGraphTest, AHandleThatGoesIsLetGo) {
    Graph graph({handle(0, 1000, 0), handle(1, 4000, 0)});
    const QPointF start = graph.placeOf(1);
    graph.press(start);
    graph.view.setHandles({graph.kept[0]});
    graph.moveTo(start + QPointF(50, 0));
    EXPECT_EQ(graph.calls, 0);

    graph.press(graph.placeOf(0));
    graph.view.setEnabled(false);
    graph.view.setEnabled(true);
    graph.moveTo(start);
    EXPECT_EQ(graph.calls, 0) << "a press from before it was disabled";
}

TEST(EQGraphTest, KeysChooseAHandleAndMoveIt) {
    Graph graph({handle(0, 1000, 0), handle(1, 4000, 11.8), handle(2, 20, 0), handle(9, 500, 0)});
    graph.key(Qt::Key_BracketRight);
    EXPECT_EQ(graph.view.selection(), 0);
    graph.key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(graph.view.selection(), 1);
    graph.key(Qt::Key_Up);
    EXPECT_EQ(graph.kept[1].gain, 12);
    graph.key(Qt::Key_Right);
    EXPECT_NEAR(graph.kept[1].fc, 4000 * std::exp2(1 / 24.0), 1e-6);
    graph.key(Qt::Key_3);
    graph.key(Qt::Key_Left);
    EXPECT_EQ(graph.kept[2].fc, 20);
    graph.key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_GE(graph.kept[2].fc, 21) << "whole hertz must not swallow a fine step";
    graph.key(Qt::Key_Down, Qt::AltModifier);
    EXPECT_NEAR(graph.kept[2].gain, -0.1, 1e-9);
    graph.key(Qt::Key_0);
    EXPECT_EQ(graph.view.selection(), 9);
    graph.key(Qt::Key_BracketRight);
    EXPECT_EQ(graph.view.selection(), 0);
    graph.key(Qt::Key_PageDown);
    EXPECT_EQ(graph.turned, 0);
    EXPECT_EQ(graph.notchesTurned, -1);
}

TEST(EQGraphTest, MovingALevelLeavesAFrequencyBeyondTheGraphAlone) {
    Graph graph({handle(0, 22000, 2)});
    graph.key(Qt::Key_1);
    graph.key(Qt::Key_Up);
    EXPECT_EQ(graph.kept[0].fc, 22000);
    EXPECT_EQ(graph.kept[0].gain, 2.5);
}

TEST(EQGraphTest, TheWheelTurnsTheHandleUnderIt) {
    Graph graph({handle(0, 632.4555, 0)});
    const auto wheel = [&graph](QPointF at) {
        QWheelEvent event(at, graph.view.mapToGlobal(at), {}, {0, 240}, {}, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&graph.view, &event);
        return event.isAccepted();
    };
    EXPECT_FALSE(wheel(graph.placeOf(0) + QPointF(60, 0)));
    EXPECT_TRUE(wheel(graph.placeOf(0)));
    EXPECT_EQ(graph.turned, 0);
    EXPECT_EQ(graph.notchesTurned, 2);
}

TEST(EQGraphTest, TellsAScreenReaderWhatItShows) {
    Graph graph({handle(0, 1000, 0), handle(1, 4000, 0)});
    EXPECT_EQ(graph.view.valueText(), "Banda 1; Banda 2");
    graph.click(graph.placeOf(1));
    EXPECT_EQ(graph.view.valueText(), "Banda 2");
    graph.view.setHandles({});
    graph.view.setCurves({{"SAÍDA 1", Theme::accent, {}, false}, {"SAÍDA 2", Theme::accent, {}, false}});
    EXPECT_EQ(graph.view.valueText(), "SAÍDA 1; SAÍDA 2");
}

TEST(EQGraphTest, DrawsCurvesAndHandlesWhereTheyAre) {
    Graph graph({handle(0, 100, -9), handle(1, 10000, -9)});
    graph.kept[1].dimmed = true;
    graph.view.setHandles(graph.kept);
    graph.view.setCurves({{"a", Theme::accent, std::vector<double>(320, 6), true}});
    const auto inkAt = [&graph](double hz, double db) {
        const QImage image = Hand::picture(graph.view, 2);
        return image.pixelColor((QPointF(graph.view.plot().x(hz), graph.view.plot().y(db)) * 2).toPoint());
    };
    EXPECT_EQ(inkAt(650, 6).rgb(), Theme::accent.rgb());
    EXPECT_NEAR(inkAt(650, 3).alphaF(), 0.16, 0.02) << "shaded down to 0 dB";
    EXPECT_EQ(inkAt(650, -3).alpha(), 0);
    EXPECT_GT(inkAt(95, -9).saturation(), 200);
    EXPECT_LT(inkAt(9500, -9).saturation(), 20) << "dimmed";
    EXPECT_GT(inkAt(9500, -9).alpha(), 40);

    graph.view.setCurves({{"a", Theme::accent, std::vector<double>(320, -6), false}});
    EXPECT_LT(inkAt(650, 6).alpha(), 40);
    EXPECT_EQ(inkAt(650, -6).rgb(), Theme::accent.rgb());
}
