#include "rig.hpp"

#include "app/model/equaliser.hpp"

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
    EXPECT_EQ(rig.model->activePreset()->name, "Voz");
    for (const std::string_view input : K7Q::inputs) {
        EXPECT_EQ(band(rig, input, 0), (PeqValue{100, -4, 0.7F, 1, false}));
        EXPECT_EQ(band(rig, input, 1).fc, 329U) << "as it was";
        EXPECT_EQ(band(rig, input, 2), (PeqValue{1000, 2.5, 1, 0, false}));
        EXPECT_EQ(band(rig, input, 3), (PeqValue{8000, 1, 0.7F, 2, false}));
    }
}

TEST(SimpleModeTest, ATonePresetIsActiveWithinATwentiethOfADecibel) {
    Rig rig;
    rig.goOnline();
    for (const TonePreset& preset : TonePreset::all)
        for (const auto& [offset, active] : {std::pair(0.04, true), {-0.04, true}, {0.06, false}})
            for (const ToneBand moved : toneBands) {
                for (const ToneBand each : toneBands)
                    rig.model->setTone(each, preset.gain(each) + (each == moved ? offset : 0));
                EXPECT_EQ(rig.model->activePreset(), active ? std::optional(preset) : std::nullopt) << offset;
            }
}

TEST(SimpleModeTest, LevelsMutesAndRoutesLeaveTheOtherFieldsOfAModule) {
    Rig rig;
    for (const int module : {1, 3, 4, 5})
        rig.line->board(0).store(std::uint8_t(module), {GainValue{-6, true, false}});
    rig.line->board(0).store(2, {GainValue{-2, false, true}});
    rig.line->board(0).store(80, {MixerValue{-6, true, false}});
    rig.goOnline();
    rig.model->setVolume(-9);
    rig.model->toggleMute();  // input 0 decides
    EXPECT_EQ(rig.shown(0, 1), ModuleValue{(GainValue{-9, false, false})});
    EXPECT_EQ(rig.shown(0, 2), gain(-9));
    rig.model->toggleMute();
    EXPECT_EQ(rig.shown(0, 2), ModuleValue{(GainValue{-9, true, true})});
    for (const bool on : {true, false}) {
        rig.model->setRoute("In1", "Out0", on);
        EXPECT_EQ(rig.shown(0, 80), ModuleValue{(MixerValue{-6, !on, false})});
    }
    rig.model->output = 1;  // makes no difference
    EXPECT_FALSE(rig.model->outputsMuted());
    rig.model->toggleOutputMute();
    EXPECT_TRUE(rig.model->outputsMuted());
    rig.model->toggleOutputMute();
    EXPECT_EQ(rig.shown(0, 3), ModuleValue{(GainValue{-6, false, false})});
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
    rig.model->set(34, {PeqValue{1000, 0, 1, 0, false}});  // the last band
    EXPECT_FALSE(rig.model->eqBypassed("Out1"));
    rig.model->resetEq("In0");
    rig.time.advance(1s);
    EXPECT_EQ(rig.written(), (std::vector<int>{25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 7, 8, 9, 10}));
}

TEST(SimpleModeTest, AModuleNotReadOrOfAnotherKindCountsAsItsDefault) {
    Rig rig;
    AppModel& model = *rig.model;
    EXPECT_EQ(model.valueAs<PeqValue>(ModuleKind::peq, "Out3", 9)->fc, 11639U);
    EXPECT_EQ(model.value(ModuleKind::vu, "In0"), std::nullopt);
    model.toggleMute();  // of no speaker
    for (const bool read : {false, true}) {
        if (read) rig.goOnline();
        for (std::uint8_t module = 1; module <= 92; ++module)
            model.set(module, {true});
        EXPECT_EQ(model.crossover("Out2").highPass, (FilterValue{20, 3, true}));
        EXPECT_EQ(model.crossover("Out2").lowPass, (FilterValue{22000, 3, true}));
        EXPECT_EQ(model.activePreset()->name, "Plano");
        EXPECT_FALSE(model.outputsMuted());
        EXPECT_FALSE(model.eqBypassed("Out3"));
    }
    model.setVolume(-3);
    model.toggleOutputMute();
    EXPECT_EQ(rig.shown(0, 1), ModuleValue{true}) << "no gain to change";
    EXPECT_EQ(rig.shown(0, 3), ModuleValue{true});
    model.setRoute("In1", "Out0", true);
    EXPECT_EQ(rig.shown(0, 80), ModuleValue{(MixerValue{0, false, true})});
    model.resetEq("Out3");
    EXPECT_EQ(band(rig, "Out3", 9), (PeqValue{1000, 0, 3, 0, false}));
}

}  // namespace
}  // namespace Tests
