#include "tests/ui/pages/desk.hpp"

#include "ui/kit/analogvu.hpp"
#include "ui/kit/caption.hpp"
#include "ui/kit/meterbar.hpp"

#include <gtest/gtest.h>

using namespace Tests;

TEST(ToneViewTest, AKnobReachesBothInputsOfAllSpeakers) {
    Desk desk(chainOf(2));
    desk.connectByHand();
    desk.dragUp("Graves", 46);
    for (std::size_t board = 0; board < 2; ++board)
        for (const std::string_view input : K7Q::inputs)
            EXPECT_EQ(desk.held<PeqValue>(board, ModuleKind::peq, input, 0),
                      (PeqValue{100, 5, 0.7F, std::uint8_t(PeqType::lowShelf), false}));
}

TEST(ToneViewTest, PresetsLightUpWhileTheyHold) {
    Desk desk;
    desk.connectByHand();
    EXPECT_TRUE(desk.lit("PLANO"));
    desk.click("FESTA");
    EXPECT_TRUE(desk.lit("FESTA"));
    EXPECT_FALSE(desk.lit("PLANO"));
    EXPECT_EQ(desk.readOut("Médios"), "-1.5 dB");
    EXPECT_EQ(desk.held<PeqValue>(0, ModuleKind::peq, "In1", 3).gain, 3);
    QTest::keyClick(&desk.find<Kit::ValueControl>("Médios"), Qt::Key_Up);
    EXPECT_FALSE(desk.lit("FESTA"));
}

TEST(ToneViewTest, VolumeAndMute) {
    Desk desk;
    desk.connectByHand();
    auto& fader = desk.find<Kit::ValueControl>("Entrada");
    Hand::pull(fader, {{0, -500}, {0, 10000}});
    EXPECT_EQ(desk.readOut("Entrada"), "-60.0 dB");
    Hand::mouse(fader, QEvent::MouseButtonRelease, {});
    desk.settle();
    EXPECT_EQ(desk.held<GainValue>(0, ModuleKind::gain, "In1").db, -60);
    desk.click("Mudo da entrada");
    EXPECT_TRUE(desk.held<GainValue>(0, ModuleKind::gain, "In0").mute);
    EXPECT_TRUE(desk.lit("Mudo da entrada"));
    desk.click("Mudo das saídas");
    EXPECT_TRUE(desk.held<GainValue>(0, ModuleKind::gain, "Out3").mute);
    desk.click("Mudo das saídas");
    EXPECT_FALSE(desk.held<GainValue>(0, ModuleKind::gain, "Out0").mute);
}

TEST(ToneViewTest, MetersFollowTheSpeaker) {
    Desk desk;
    desk.connectByHand();
    const QString before = desk.find<Kit::AnalogVU>("ENTRADA L").valueText();
    desk.model->meters = std::vector<float>{-18, -15, -30, -20, -40, -50};
    EXPECT_EQ(desk.find<Kit::AnalogVU>("ENTRADA L").valueText(), "0 VU");
    EXPECT_EQ(desk.find<Kit::AnalogVU>("ENTRADA R").valueText(), "3 VU");
    EXPECT_NE(before, "0 VU");
    EXPECT_TRUE(desk.shows<Kit::Caption>("-20.0 dB"));
}

TEST(DynamicsViewTest, ShowsTheFirstOutputAndEditsAllChosenOnes) {
    Desk desk;
    desk.connectByHand();
    desk.click("DINÂMICA");
    EXPECT_FALSE(desk.lit("DESLIGADO"));
    desk.click("DESLIGADO");
    EXPECT_EQ(desk.readOut("Ratio"), "4.0 : 1");
    EXPECT_EQ(desk.held<DynamicsValue>(0, ModuleKind::compressor, "Out3").ratio, 4);

    desk.click("SAÍDA 2");
    QTest::keyClick(&desk.find<Kit::ValueControl>("Attack"), Qt::Key_Up);
    desk.settle();
    EXPECT_EQ(desk.readOut("Attack"), "46 ms");
    EXPECT_EQ(desk.held<DynamicsValue>(0, ModuleKind::compressor, "Out1").attack, 46U);
    EXPECT_EQ(desk.held<DynamicsValue>(0, ModuleKind::compressor, "Out0").attack, 45U);
    EXPECT_EQ(desk.all<Kit::MeterBar>().size(), 1U);

    desk.click("BYPASS");
    EXPECT_FALSE(desk.held<bool>(0, ModuleKind::limiterBypass, "Out1"));
    EXPECT_TRUE(desk.held<bool>(0, ModuleKind::limiterBypass, "Out0"));
    desk.click("TODAS AS SAÍDAS");
    EXPECT_TRUE(desk.shows("BYPASS"));
    EXPECT_EQ(desk.readOut("Attack"), "45 ms");
}

TEST(DelayViewTest, ADelayIsKeptWhileItIsSwitched) {
    Desk desk;
    desk.connectByHand();
    desk.click("DELAY");
    auto& fader = desk.find<Kit::ValueControl>("Saída 3");
    fader.propose(9);
    EXPECT_EQ(desk.readOut("Saída 3"), "5.00 ms");
    EXPECT_TRUE(desk.shows<Kit::Caption>("171.5 cm"));
    fader.propose(2.5);
    desk.settle();
    EXPECT_EQ(desk.held<DelayValue>(0, ModuleKind::delay, "Out2"), (DelayValue{2.5F, true}));
    desk.click("Delay da saída 3");
    EXPECT_EQ(desk.held<DelayValue>(0, ModuleKind::delay, "Out2"), (DelayValue{2.5F, false}));
    EXPECT_EQ(desk.held<DelayValue>(0, ModuleKind::delay, "Out1"), (DelayValue{0, true}));
}
