#include "tests/ui/pages/desk.hpp"

#include "Wendril/filtermath.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/pages/technical/outputcolors.hpp"

#include <gtest/gtest.h>

#include <QLineEdit>

#include <limits>

using namespace Tests;

namespace {

struct Equaliser : Desk {
    explicit Equaliser(const QString& page) { goTo(page); }

    void set(ModuleKind kind, const char* channel, int band, const ModuleValue& value) {
        model->set(K7Q::index(kind, channel, band), value);
    }

    double levelAt(double hz) {
        const auto& freqs = Kit::EqPlot::freqs();
        const auto at = std::ranges::lower_bound(freqs, hz) - freqs.begin();
        return graph().shownCurves().at(0).db.at(std::size_t(at));
    }
};

}  // namespace

TEST(EqualiserTest, ADraggedHandleMovesItsBandOnlyAndAtOnce) {
    Equaliser desk("OUT 2");
    Kit::EQGraph& graph = desk.graph();
    const auto handlesBefore = graph.shownHandles();
    const auto curvesBefore = graph.shownCurves();
    ASSERT_EQ(handlesBefore.size(), 10U);
    const QPointF to(graph.plot().x(1500), graph.plot().y(5));
    Hand::mouse(graph, QEvent::MouseButtonPress, graph.placeOf(handlesBefore.at(4)));
    Hand::mouse(graph, QEvent::MouseMove, to);
    EXPECT_NEAR(desk.value("Banda 5, frequência"), 1500, 8);
    EXPECT_EQ(desk.readOut("Banda 5, ganho"), "+5.0 dB");
    EXPECT_LT((graph.placeOf(graph.shownHandles().at(4)) - to).manhattanLength(), 1);
    EXPECT_NE(graph.shownCurves(), curvesBefore);
    Hand::mouse(graph, QEvent::MouseButtonRelease, to);
    desk.settle();
    const auto held = desk.held<PeqValue>(0, ModuleKind::peq, "Out1", 4);
    EXPECT_NEAR(held.gain, 5, 0.1);
    EXPECT_EQ(held.fc, desk.value("Banda 5, frequência"));
    EXPECT_EQ(held.q, 3);
    EXPECT_EQ(desk.written().size(), 1);
    graph.onTurn(2, 8);
    EXPECT_NEAR(desk.value("Banda 3, Q"), 6, 1e-5) << "eight notches of the wheel are an octave";
    graph.onTurn(2, 80);
    EXPECT_EQ(desk.value("Banda 3, Q"), 50);
}

TEST(EqualiserTest, HandlesAndCurveAreThoseOfTheBandsAndTheCrossover) {
    Equaliser desk("OUT 1");
    desk.set(ModuleKind::peq, "Out0", 9, {PeqValue{500, 6, 2, 0, false}});
    desk.set(ModuleKind::peq, "Out0", 1, {PeqValue{90, 3, 2, 0, true}});
    const auto& handles = desk.graph().shownHandles();
    EXPECT_EQ(handles.at(9).label, "10");
    EXPECT_EQ(handles.at(9).fc, 500);
    EXPECT_EQ(handles.at(9).gain, 6);
    EXPECT_EQ(handles.at(9).color, Theme::accent);
    EXPECT_FALSE(handles.at(9).dimmed);
    EXPECT_TRUE(handles.at(1).dimmed) << "a bypassed band keeps its handle";
    EXPECT_EQ(handles.at(1).fc, 90);
    EXPECT_TRUE(handles.at(1).description.contains("desligada"));
    EXPECT_NEAR(desk.levelAt(500), 6, 0.1);
    EXPECT_NEAR(desk.levelAt(90), 0, 0.1);
    desk.set(ModuleKind::hpf, "Out0", 0, {FilterValue{500, 7, false}});
    EXPECT_NEAR(desk.levelAt(500), 6 - 3, 0.3);
    EXPECT_LT(desk.levelAt(30), -60);
    EXPECT_TRUE(desk.graph().shownCurves().at(0).fill);
}

TEST(EqualiserTest, TheCrossoverPageShowsACurveForEachOutput) {
    Equaliser desk("X-OVER");
    const auto before = desk.graph().shownCurves();
    ASSERT_EQ(before.size(), 4U);
    EXPECT_TRUE(desk.graph().shownHandles().empty());
    desk.set(ModuleKind::lpf, "Out2", 0, {FilterValue{200, 9, false}});
    const QColor colors[] = {Theme::rgb(1.0, 0.42, 0.10), Theme::rgb(0.95, 0.30, 0.75),
                             Theme::rgb(1.0, 0.78, 0.20), Theme::rgb(0.35, 0.75, 1.0)};
    const auto& after = desk.graph().shownCurves();
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(after[i] == before[i], i != 2);
        EXPECT_EQ(after[i].id, QString("SAÍDA %1").arg(i + 1));
        EXPECT_EQ(after[i].color, colors[i]);
        EXPECT_FALSE(after[i].fill);
    }
}

TEST(EqualiserTest, MenuEntriesSendTheirOwnCodes) {
    std::vector<std::pair<QString, int>> slopes;
    for (const auto& [code, name] : FilterMath::slopes)
        slopes.emplace_back(QString::fromUtf8(name.data(), qsizetype(name.size())), code);
    const struct {
        const char* menu;
        ModuleKind kind;
        std::vector<std::pair<QString, int>> entries;
    } menus[] = {{"Banda 4, tipo", ModuleKind::peq, {{"PEQ", 0}, {"Low shelf", 1}, {"High shelf", 2}}},
                 {"HPF, inclinação", ModuleKind::hpf, slopes},
                 {"LPF, inclinação", ModuleKind::lpf, slopes}};
    Equaliser desk("OUT 1");
    for (const auto& [menu, kind, entries] : menus) {
        for (std::size_t i = 0; i < entries.size(); ++i)
            desk.press(menu, Qt::Key_Up);
        for (const auto& [title, code] : entries) {
            EXPECT_EQ(desk.readOut(menu), title);
            const ModuleValue held =
                desk.line->board(0).value(K7Q::index(kind, "Out0", kind == ModuleKind::peq ? 3 : 0));
            EXPECT_NE(fieldsText(held).find("type=" + std::to_string(code) + " "), std::string::npos)
                << fieldsText(held);
            desk.press(menu, Qt::Key_Down);
        }
    }
    desk.set(ModuleKind::peq, "Out0", 3, {PeqValue{100, 0, 1, 77, false}});
    EXPECT_EQ(desk.readOut("Banda 4, tipo"), "") << "a code without a name";
    desk.press("Banda 4, ganho", Qt::Key_Up);
    EXPECT_EQ(desk.held<PeqValue>(0, ModuleKind::peq, "Out0", 3).type, 77);
}

TEST(EqualiserTest, TypedNumbersReachTheBoardWithinTheirLimits) {
    Equaliser desk("OUT 1");
    for (const auto& [field, typed, setting] : {
             std::tuple{"Banda 3, frequência", "2,5k", "PEQ/Out0/2 fc=2500 gain=0 q=3 type=0 bypass=0"},
             {"Banda 3, frequência", "50k", "PEQ/Out0/2 fc=22000 gain=0 q=3 type=0 bypass=0"},
             {"Banda 3, Q", "0,1", "PEQ/Out0/2 fc=22000 gain=0 q=0.3 type=0 bypass=0"},
             {"Banda 3, ganho", "-3,5 dB", "PEQ/Out0/2 fc=22000 gain=-3.5 q=0.3 type=0 bypass=0"},
             {"LPF, frequência", "3", "LPF/Out0 fc=20 type=3 bypass=1"},
         }) {
        auto& scrub = desk.find<Kit::ScrubField>(field);
        auto* const editor = scrub.findChild<QLineEdit*>();
        QTest::mouseDClick(&scrub, Qt::LeftButton);
        QTest::keyClicks(editor, typed);
        QTest::keyClick(editor, Qt::Key_Return);
        desk.settle();
        EXPECT_EQ(desk.written(), QStringList{setting}) << typed;
    }
}

TEST(EqualiserTest, AnythingThatABoardReportsIsShownAndAnEditMakesItLegal) {
    Equaliser desk("OUT 1");
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    desk.set(ModuleKind::peq, "Out0", 0, {PeqValue{0, nan, nan, 0, false}});
    desk.set(ModuleKind::peq, "Out0", 1, {PeqValue{4000000000, infinite, 0, 2, false}});
    EXPECT_FALSE(desk.view.grab().isNull());
    for (const auto& handle : desk.graph().shownHandles())
        EXPECT_TRUE(
            QRectF(desk.graph().rect()).adjusted(-5, -5, 5, 5).contains(desk.graph().placeOf(handle)));
    desk.settle();
    desk.written();
    desk.click("Banda 1");
    desk.click("Banda 2");
    EXPECT_EQ(desk.written(), (QStringList{"PEQ/Out0/0 fc=0 gain=0 q=3 type=0 bypass=1",
                                           "PEQ/Out0/1 fc=4000000000 gain=12 q=0.3 type=2 bypass=1"}));
}
