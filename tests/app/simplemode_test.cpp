#include "rig.hpp"

namespace Tests {
namespace {

PeqValue band(const Rig& rig, std::string_view channel, int number) {
    return rig.model->valueAs<PeqValue>(ModuleKind::peq, channel, number).value();
}

TEST(SimpleModeTest, ToneIsThreeBandsOfBothInputs) {
    Rig rig;
    rig.goOnline();
    rig.model->setTone(ToneBand::bass, -4);
    rig.model->setTone(ToneBand::mid, 2.5);
    rig.model->setTone(ToneBand::treble, 1);
    for (const std::string_view input : K7Q::inputs) {
        EXPECT_EQ(band(rig, input, 0), (PeqValue{100, -4, 0.7F, 1, false}));
        EXPECT_EQ(band(rig, input, 1).fc, 329U) << "as it was";
        EXPECT_EQ(band(rig, input, 2), (PeqValue{1000, 2.5, 1, 0, false}));
        EXPECT_EQ(band(rig, input, 3), (PeqValue{8000, 1, 0.7F, 2, false}));
    }
}

TEST(SimpleModeTest, ATonePresetIsActiveWithinATwentiethOfADecibel) {
    const struct {
        double bass, mid, treble;
        std::string name;
    } cases[] = {
        {0, 0, 0, "Plano"},         {-4, 2.5, 1, "Voz"},    {3, 0, 2, "Música"},
        {5, -1.5, 3, "Festa"},      {2, 1, 1.5, "Ao vivo"}, {-4, 2.5, 1.04, "Voz"},
        {-3.96, 2.54, 0.96, "Voz"}, {-4, 2.5, 1.06, ""},    {-4, 2.5, 0.94, ""},
    };
    Rig rig;
    EXPECT_EQ(rig.model->activePreset()->name, "Plano") << "nothing read yet";
    rig.goOnline();
    for (const auto& expected : cases) {
        rig.model->setTone(ToneBand::bass, expected.bass);
        rig.model->setTone(ToneBand::mid, expected.mid);
        rig.model->setTone(ToneBand::treble, expected.treble);
        const auto active = rig.model->activePreset();
        EXPECT_EQ(active ? active->name : "", expected.name);
    }
}

TEST(SimpleModeTest, RoutingKeepsTheLevelOfACrosspoint) {
    Rig rig;
    rig.line->board(0).store(80, {MixerValue{-6, true, false}});
    rig.goOnline();
    rig.model->setRoute("In1", "Out0", true);
    EXPECT_EQ(rig.shown(0, 80), ModuleValue{(MixerValue{-6, false, false})});
    rig.model->setRoute("In1", "Out0", false);
    EXPECT_EQ(rig.shown(0, 80), ModuleValue{(MixerValue{-6, true, false})});
}

TEST(SimpleModeTest, MutingTheOutputsTakesAllFour) {
    Rig rig;
    for (std::uint8_t module = 3; module <= 5; ++module)
        rig.line->board(0).store(module, {GainValue{-2, true, true}});
    rig.goOnline();
    rig.model->output = 1;
    EXPECT_FALSE(rig.model->outputsMuted());
    rig.model->toggleOutputMute();
    EXPECT_TRUE(rig.model->outputsMuted());
    rig.model->toggleOutputMute();
    EXPECT_EQ(rig.shown(0, 3), gain(-2));
    EXPECT_EQ(rig.shown(0, 6), gain(0));
}

TEST(SimpleModeTest, AnEqualiserAsAWholeIsRewrittenWithinItsLimits) {
    Rig rig;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    rig.line->board(0).store(25, {PeqValue{5, 40, 0.1F, 2, true}});
    rig.line->board(0).store(26, {PeqValue{4000000000, -40, 90, 1, false}});
    rig.line->board(0).store(27, {PeqValue{1000, nan, nan, 0, false}});
    rig.goOnline();
    rig.model->setEqBypass("Out1", true);
    EXPECT_EQ(band(rig, "Out1", 0), (PeqValue{20, 12, 0.3F, 2, true}));
    EXPECT_EQ(band(rig, "Out1", 1), (PeqValue{22000, -12, 50, 1, true}));
    EXPECT_EQ(band(rig, "Out1", 2), (PeqValue{1000, 0, 3, 0, true}));
    EXPECT_TRUE(rig.model->eqBypassed("Out1"));
    rig.model->resetEq("Out1");
    EXPECT_EQ(band(rig, "Out1", 0), (PeqValue{20, 0, 0.3F, 2, true}));
    rig.time.advance(1s);
    EXPECT_EQ(rig.written().size(), 10U);

    rig.model->set(34, {band(rig, "Out2", 9)});
    EXPECT_FALSE(rig.model->eqBypassed("Out1")) << "the last band is not";
    rig.port->sent.clear();
    rig.model->resetEq("In0");
    rig.time.advance(1s);
    EXPECT_EQ(rig.written(), (std::vector<int>{34, 7, 8, 9, 10}));
}

TEST(SimpleModeTest, ACrossoverNeverReadIsOpen) {
    Rig rig;
    const auto crossover = rig.model->crossover("Out2");
    EXPECT_EQ(crossover.highPass, (FilterValue{20, 3, true}));
    EXPECT_EQ(crossover.lowPass, (FilterValue{22000, 3, true}));
}

}  // namespace
}  // namespace Tests
