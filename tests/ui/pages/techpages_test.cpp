#include "tests/ui/pages/desk.hpp"

#include "ui/kit/button.hpp"
#include "ui/kit/eqgraph.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/theme.hpp"
#include "ui/pages/technical/filterrow.hpp"
#include "ui/pages/technical/peqrow.hpp"
#include "ui/pages/technical/techpageview.hpp"

#include <gtest/gtest.h>

using namespace Tests;

namespace {

/// A user in technical mode, at a page.
struct Technician : Desk {
    explicit Technician(const QString& page, const Simulator::LineOptions& options = chainOf(1))
        : Desk(options) {
        connectByHand();
        model->technical = true;
        click(page);
    }

    Kit::EQGraph& graph() { return *all<Kit::EQGraph>().at(0); }

    const Kit::ValueControl& control(const QString& name) { return find<Kit::ValueControl>(name); }
};

}  // namespace

TEST(TechPageViewTest, EachTabHasItsPage) {
    struct Case {
        const char* tab;
        const char* panel;
        std::size_t bands;
        std::size_t filters;
    };
    Technician desk("MAIN");
    for (const auto& [tab, panel, bands, filters] : {
             Case{"IN 1", "NOISE GATE", 4, 0},
             Case{"IN 2", "NOISE GATE", 4, 0},
             Case{"OUT 1", "COMPRESSOR", 10, 2},
             Case{"OUT 4", "COMPRESSOR", 10, 2},
             Case{"X-OVER", "", 0, 8},
             Case{"LIMITER", "LIMITER", 0, 0},
             Case{"MAIN", "NÍVEIS", 0, 0},
         }) {
        desk.click(tab);
        EXPECT_TRUE(desk.shows<Kit::Panel>(panel)) << tab;
        EXPECT_EQ(desk.all<PeqRow>().size(), bands) << tab;
        EXPECT_EQ(desk.all<FilterRow>().size(), filters) << tab;
    }
}

TEST(TechPageViewTest, EveryPageFitsTheSmallestWindow) {
    Technician desk("MAIN");
    desk.view.resize(ContentView::smallest);
    for (const TechPage& page : TechPage::all) {
        desk.click(page.title());
        for (const Kit::Panel* const panel : desk.all<Kit::Panel>()) {
            EXPECT_GE(panel->height(), panel->minimumSizeHint().height()) << page.title().toStdString();
            EXPECT_GE(panel->width(), panel->minimumSizeHint().width()) << page.title().toStdString();
            const QPoint end = panel->mapTo(&desk.view, panel->rect().bottomRight());
            EXPECT_LE(end.y(), ContentView::smallest.height() - 24) << page.title().toStdString();
            EXPECT_LE(end.x(), ContentView::smallest.width() - 32) << page.title().toStdString();
        }
    }
}

TEST(TechPageViewTest, PagesOutliveSpeakersAndLinks) {
    Technician desk("MAIN", chainOf(2));
    for (const TechPage& page : TechPage::all)
        desk.click(page.title());
    desk.model->target = 2;
    desk.model->speakers = Speakers{};
    for (const TechPage& page : TechPage::all) {
        desk.view.techPage = page;
        EXPECT_FALSE(desk.view.grab().isNull());
    }
    desk.click("DESCONECTAR");
    EXPECT_FALSE(desk.view.grab().isNull());
}

TEST(TechChannelViewTest, ADraggedHandleMovesCurveAndRowAtOnceAndReachesTheBoard) {
    Technician desk("OUT 2");
    Kit::EQGraph& graph = desk.graph();
    const QPointF from = graph.placeOf(graph.shownHandles().at(4));
    const QPointF to(graph.plot().x(1500), graph.plot().y(5));
    const auto before = graph.shownCurves();
    Hand::mouse(graph, QEvent::MouseButtonPress, from);
    Hand::mouse(graph, QEvent::MouseMove, to);
    EXPECT_NEAR(desk.value("Banda 5, frequência"), 1500, 8);
    EXPECT_EQ(desk.readOut("Banda 5, ganho"), "+5.0 dB");
    EXPECT_LT((graph.placeOf(graph.shownHandles().at(4)) - to).manhattanLength(), 1);
    EXPECT_NE(graph.shownCurves(), before);
    Hand::mouse(graph, QEvent::MouseButtonRelease, to);
    desk.settle();
    const auto held = desk.held<PeqValue>(0, ModuleKind::peq, "Out1", 4);
    EXPECT_NEAR(held.gain, 5, 0.1);
    EXPECT_EQ(held.fc, desk.value("Banda 5, frequência"));
    EXPECT_EQ(held.q, 3);
}

TEST(TechChannelViewTest, ABandSwitchedOffKeepsItsHandleDimmed) {
    Technician desk("IN 1");
    const auto before = desk.graph().shownHandles().at(1);
    desk.click("Banda 2");
    const auto after = desk.graph().shownHandles().at(1);
    EXPECT_TRUE(after.dimmed);
    EXPECT_EQ(after.fc, before.fc);
    EXPECT_TRUE(desk.held<PeqValue>(0, ModuleKind::peq, "In0", 1).bypass);
    EXPECT_FALSE(desk.lit("Banda 2"));
    EXPECT_TRUE(desk.graph().valueText().contains("desligada"));
}

TEST(TechChannelViewTest, TheCurveIsThatOfBandsAndCrossover) {
    Technician desk("OUT 1");
    const auto levelAt = [&desk](double hz) {
        const auto& freqs = Kit::EQPlot::freqs();
        const auto at = std::ranges::lower_bound(freqs, hz) - freqs.begin();
        return desk.graph().shownCurves().at(0).db.at(static_cast<std::size_t>(at));
    };
    EXPECT_EQ(levelAt(30), 0);
    desk.model->set(K7Q::index(ModuleKind::hpf, "Out0", 0), ModuleValue{FilterValue{1000, 7, false}});
    EXPECT_NEAR(levelAt(1000), -3, 0.3);
    EXPECT_LT(levelAt(30), -60);
}

TEST(TechChannelViewTest, ResetAndBypassReachEveryBand) {
    Technician desk("IN 2");
    QTest::keyClick(&desk.find<Kit::ValueControl>("Banda 3, ganho"), Qt::Key_PageUp);
    EXPECT_EQ(desk.readOut("Banda 3, ganho"), "+1.0 dB");
    desk.click("EQ RESET");
    EXPECT_EQ(desk.readOut("Banda 3, ganho"), "+0.0 dB");
    desk.click("EQ BYPASS");
    EXPECT_TRUE(desk.lit("EQ BYPASS"));
    EXPECT_FALSE(desk.lit("Banda 4"));
    EXPECT_TRUE(desk.held<PeqValue>(0, ModuleKind::peq, "In1", 3).bypass);
    desk.click("Banda 1");
    EXPECT_FALSE(desk.lit("EQ BYPASS"));
}

TEST(TechChannelViewTest, LimitsAndDefaultsOfTheOtherControls) {
    Technician desk("IN 1");
    EXPECT_EQ(desk.control("ENTRADA 1").range.upper, 6);
    EXPECT_EQ(desk.readOut("Threshold"), "-120 dB");
    EXPECT_EQ(desk.readOut("Release"), "724 ms");
    desk.click("OUT 1");
    EXPECT_EQ(desk.control("SAÍDA 1").range.upper, 15);
    EXPECT_EQ(desk.readOut("Threshold"), "+22.0 dB");
    EXPECT_EQ(desk.readOut("Attack"), "45 ms");
}

TEST(TechChannelViewTest, DynamicsAndDelayReachTheBoardOfThisChannelAlone) {
    Technician desk("IN 1");
    desk.click("BYPASS");
    EXPECT_TRUE(desk.lit("LIGADO"));
    EXPECT_FALSE(desk.held<bool>(0, ModuleKind::gateBypass, "In0"));
    EXPECT_TRUE(desk.held<bool>(0, ModuleKind::gateBypass, "In1"));
    QTest::keyClick(&desk.find<Kit::ValueControl>("Attack"), Qt::Key_Up);
    desk.settle();
    EXPECT_EQ(desk.held<DynamicsValue>(0, ModuleKind::gate, "In0").attack, 46U);

    desk.click("OUT 3");
    QTest::keyClick(&desk.find<Kit::ValueControl>("Threshold"), Qt::Key_Down);
    desk.click("OFF");
    QTest::keyClick(&desk.find<Kit::ValueControl>("Delay"), Qt::Key_PageUp);
    desk.settle();
    EXPECT_EQ(desk.held<DynamicsValue>(0, ModuleKind::compressor, "Out2").threshold, 21.5F);
    EXPECT_EQ(desk.held<DynamicsValue>(0, ModuleKind::compressor, "Out2").ratio, 1);
    EXPECT_EQ(desk.held<DynamicsValue>(0, ModuleKind::compressor, "Out0").threshold, 22);
    EXPECT_EQ(desk.held<DelayValue>(0, ModuleKind::delay, "Out2"), (DelayValue{0.1F, false}));
}

TEST(TechMainViewTest, StripsEditTheirChannel) {
    Technician desk("MAIN");
    EXPECT_EQ(desk.control("In 2").range.upper, 6);
    EXPECT_EQ(desk.control("Out 4").range.upper, 15);
    QTest::keyClick(&desk.find<Kit::ValueControl>("Out 4"), Qt::Key_Down);
    for (const char* const key : {"MUTE", "0°"})
        for (Kit::Button* const each : desk.all<Kit::Button>())
            if (each->accessibleName() == key && each->accessibleDescription() == "Out 4") each->activate();
    desk.settle();
    EXPECT_EQ(desk.held<GainValue>(0, ModuleKind::gain, "Out3"), (GainValue{-0.5F, true, false}));
    EXPECT_EQ(desk.held<GainValue>(0, ModuleKind::gain, "Out0"), (GainValue{0, false, true}));
    EXPECT_TRUE(desk.lit("180°"));
}

TEST(RoutingPanelTest, ShowsAndEditsTheMixer) {
    Technician desk("MAIN");
    for (const auto& [name, lit] : {std::pair{"IN 1 → OUT 1", true},
                                    {"IN 2 → OUT 2", true},
                                    {"IN 1 → OUT 3", true},
                                    {"IN 2 → OUT 4", true},
                                    {"IN 2 → OUT 1", false},
                                    {"IN 1 → OUT 2", false}})
        EXPECT_EQ(desk.lit(name), lit) << name;
    desk.click("IN 2 → OUT 1");
    EXPECT_TRUE(desk.lit("IN 2 → OUT 1"));
    EXPECT_FALSE(desk.held<MixerValue>(0, ModuleKind::mixer, "In1-Out0").mute);
    desk.click("IN 2 → OUT 1");
    EXPECT_TRUE(desk.held<MixerValue>(0, ModuleKind::mixer, "In1-Out0").mute);
}

TEST(TechCrossoverViewTest, EachOutputHasItsCurveAndItsKeys) {
    Technician desk("X-OVER");
    ASSERT_EQ(desk.graph().shownCurves().size(), 4U);
    EXPECT_TRUE(desk.graph().shownHandles().empty());
    const auto before = desk.graph().shownCurves();
    desk.model->set(K7Q::index(ModuleKind::lpf, "Out2", 0), ModuleValue{FilterValue{200, 9, false}});
    const auto& after = desk.graph().shownCurves();
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(after[i] == before[i], i != 2);
    EXPECT_EQ(after[1].id, "SAÍDA 2");
    EXPECT_EQ(after[3].color, Theme::rgb(0.35, 0.75, 1.0));
    desk.click("MUTE");
    EXPECT_TRUE(desk.held<GainValue>(0, ModuleKind::gain, "Out0").mute);
}
