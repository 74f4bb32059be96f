#include "Wendril/values.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/frame.hpp"
#include "Wendril/profile.hpp"

#include <gtest/gtest.h>

#include <unordered_set>

namespace Wendril {
namespace {

TEST(ProfileTest, TheMapHoldsEveryModuleUnderItsNumber) {
    const auto& modules = K7Q::modules();
    ASSERT_EQ(modules.size(), 98U);
    for (std::size_t i = 0; i < modules.size(); ++i) {
        EXPECT_EQ(modules[i].index, i + 1);
        EXPECT_EQ(K7Q::module(modules[i].index), modules[i]);
        EXPECT_EQ(K7Q::index(modules[i].kind, modules[i].channel, modules[i].band), i + 1);
    }
    EXPECT_FALSE(K7Q::module(0) || K7Q::module(99) || K7Q::module(255));
    const std::unordered_set<ModuleRef> distinct(modules.begin(), modules.end());
    EXPECT_EQ(distinct.size(), 98U);
}

TEST(ProfileTest, ModulesHaveTheNumbersOfTheBoard) {
    const struct {
        ModuleKind kind;
        const char* channel;
        int band;
        int number;
    } cases[] = {
        {ModuleKind::gain, "In0", 0, 1},        {ModuleKind::peq, "In1", 3, 14},
        {ModuleKind::peq, "Out3", 9, 54},       {ModuleKind::hpf, "Out0", 0, 55},
        {ModuleKind::lpf, "Out3", 0, 62},       {ModuleKind::compressor, "Out0", 0, 63},
        {ModuleKind::limiter, "Out3", 0, 70},   {ModuleKind::limiterBypass, "Out2", 0, 73},
        {ModuleKind::gate, "In0", 0, 75},       {ModuleKind::gateBypass, "In1", 0, 78},
        {ModuleKind::mixer, "In1-Out0", 0, 80}, {ModuleKind::mixer, "In0-Out3", 0, 85},
        {ModuleKind::delay, "Out3", 0, 92},     {ModuleKind::vu, "In0", 0, 93},
    };
    for (const auto& c : cases)
        EXPECT_EQ(K7Q::index(c.kind, c.channel, c.band), c.number);
    EXPECT_EQ(moduleKindFromRaw("RMS_DRC"), ModuleKind::compressor);
    EXPECT_FALSE(moduleKindFromRaw("rms_drc") || moduleKindFromRaw(""));
}

TEST(ProfileDeathTest, AModuleThatTheBoardLacksStopsTheProgram) {
    EXPECT_DEATH(K7Q::index(ModuleKind::peq, "In0", 4), "no module PEQ In0 band 4");
    EXPECT_DEATH(ModuleValue::factory({ModuleKind::peq, "In0", 7, 4}), "In0 has no band 4");
}

TEST(ProfileTest, TimesSnapToTheBoardsSteps) {
    const struct {
        double ms;
        std::uint32_t step;
    } cases[] = {{96, 95},   {96.6, 97}, {0.2, 1},     {-3, 1},       {5000, 2895},
                 {724, 724}, {104, 103}, {2533, 2171}, {2533.1, 2895}};
    for (const auto& [ms, step] : cases)
        EXPECT_EQ(K7Q::nearestTime(ms), step) << ms;
    EXPECT_EQ(K7Q::timeSteps[95], 97U);
    EXPECT_EQ(K7Q::timeSteps[94], 95U);
    EXPECT_EQ(K7Q::timeSteps.back(), 2895U);
}

TEST(ValueTest, ValuesHaveTheirBytesOnTheWire) {
    const struct {
        ModuleValue value;
        const char* bytes;
    } cases[] = {
        {{GainValue{-6, true, false}}, "00 00 C0 C0 01 00 00 00"},
        {{PeqValue{1000, 3, 1.5F, 2, false}}, "E8 03 00 00 00 00 40 40 00 00 C0 3F 02 00 00 00"},
        {{FilterValue{120, 9, true}}, "78 00 00 00 09 01 00 00"},
        {{DynamicsValue{-2, 4, 1, 2, 3, 4}},
         "00 00 00 C0 00 00 80 40 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00"},
        {{LimiterValue{-2, 4, 1, 3, 4}}, "00 00 00 C0 00 00 80 40 01 00 00 00 03 00 00 00 04 00 00 00"},
        {{true}, "01 00 00 00"},
        {{MixerValue{0, false, true}}, "00 00 00 00 00 01 00 00"},
        {{DelayValue{2.5F, false}}, "00 00 20 40 00 00 00 00"},
    };
    for (const auto& [value, bytes] : cases)
        EXPECT_EQ(hex(value.encoded()), bytes);
}

TEST(ValueTest, EveryDefaultReadsBackFromItsBytesAndFromLongerReplies) {
    for (const ModuleRef& ref : K7Q::modules()) {
        const auto factory = ModuleValue::factory(ref);
        ASSERT_EQ(factory.has_value(), ref.kind != ModuleKind::vu);
        if (!factory) {
            EXPECT_FALSE(ModuleValue::decode(ref.kind, Bytes(32)).has_value());
            continue;
        }
        Bytes bytes = factory->encoded();
        EXPECT_EQ(ModuleValue::decode(ref.kind, bytes), factory) << labelOf(ref);
        EXPECT_FALSE(ModuleValue::decode(ref.kind, ByteView(bytes).first(bytes.size() - 1)).has_value());
        bytes.resize(40, 0xEE);
        EXPECT_EQ(ModuleValue::decode(ref.kind, bytes), factory) << labelOf(ref);
    }
}

TEST(ValueTest, AnyByteButZeroIsTrueAndIsSentAsOne) {
    const auto gain = ModuleValue::decode(ModuleKind::gain, Bytes{0, 0, 0, 0, 2, 0x80, 0, 0});
    ASSERT_EQ(gain, (ModuleValue{GainValue{0, true, true}}));
    EXPECT_EQ(hex(gain->encoded()), "00 00 00 00 01 01 00 00");
    EXPECT_EQ(ModuleValue::decode(ModuleKind::gateBypass, Bytes{0, 1, 0, 0}), ModuleValue{true});
    EXPECT_EQ(ModuleValue::decode(ModuleKind::limiterBypass, Bytes(4)), ModuleValue{false});
    EXPECT_EQ(ModuleValue::decode(ModuleKind::peq, Bytes(16, 200))->encoded()[12], 200);
    EXPECT_FALSE(peqTypeFromRaw(3).has_value());
}

TEST(ValueTest, DefaultsAreThoseOfTheBoard) {
    const auto text = [](ModuleKind kind, const char* channel, int band = 0) {
        return fieldsText(ModuleValue::factory(K7Q::module(K7Q::index(kind, channel, band)).value()).value());
    };
    EXPECT_EQ(text(ModuleKind::gain, "In0"), "db=0 mute=0 phaseNormal=1");
    EXPECT_EQ(text(ModuleKind::peq, "Out3", 9), "fc=11639 gain=0 q=3 type=0 bypass=0");
    EXPECT_EQ(text(ModuleKind::peq, "In1", 0), "fc=81 gain=0 q=3 type=0 bypass=0");
    EXPECT_EQ(text(ModuleKind::lpf, "Out0"), "fc=22000 type=3 bypass=1");
    EXPECT_EQ(text(ModuleKind::compressor, "Out0"),
              "threshold=22 ratio=1 hold=0 attack=45 release=724 knee=0");
    EXPECT_EQ(text(ModuleKind::limiter, "Out0"), "threshold=24 ratio=1 hold=0 release=724 knee=0");
    EXPECT_EQ(text(ModuleKind::gate, "In0"), "threshold=-120 ratio=100 hold=0 attack=45 release=724 knee=0");
    EXPECT_EQ(text(ModuleKind::limiterBypass, "Out1"), "bypass=1");
    EXPECT_EQ(text(ModuleKind::mixer, "In1-Out0"), "db=0 mute=1 phaseNormal=1");
    EXPECT_EQ(text(ModuleKind::mixer, "In1-Out3"), "db=0 mute=0 phaseNormal=1");
    EXPECT_EQ(text(ModuleKind::delay, "In1"), "ms=0 bypass=1");
}

}  // namespace
}  // namespace Wendril
