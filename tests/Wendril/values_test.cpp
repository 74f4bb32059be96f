#include "Wendril/values.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/limits.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <unordered_set>

namespace Wendril {
namespace {

using enum ModuleKind;

TEST(ProfileTest, ModulesHaveTheNumbersOfTheBoard) {
    const auto& modules = K7Q::modules();
    ASSERT_EQ(modules.size(), 98U);
    EXPECT_EQ(std::unordered_set<ModuleRef>(modules.begin(), modules.end()).size(), 98U);
    for (std::size_t i = 0; i < modules.size(); ++i) {
        EXPECT_EQ(modules[i].index, i + 1);
        EXPECT_EQ(K7Q::module(modules[i].index), modules[i]);
        EXPECT_EQ(K7Q::index(modules[i].kind, modules[i].channel, modules[i].band), i + 1);
    }
    EXPECT_FALSE(K7Q::module(0) || K7Q::module(99) || K7Q::module(255));
    // The first and the last of every kind.
    const std::map<int, std::string> labels{
        {1, "GAIN/In0"},        {6, "GAIN/Out3"},       {7, "PEQ/In0/0"},          {14, "PEQ/In1/3"},
        {15, "PEQ/Out0/0"},     {54, "PEQ/Out3/9"},     {55, "HPF/Out0"},          {58, "HPF/Out3"},
        {59, "LPF/Out0"},       {62, "LPF/Out3"},       {63, "RMS_DRC/Out0"},      {66, "RMS_DRC/Out3"},
        {67, "PEAK_DRC/Out0"},  {70, "PEAK_DRC/Out3"},  {71, "PEAK_DRC_BPS/Out0"}, {74, "PEAK_DRC_BPS/Out3"},
        {75, "NG/In0"},         {76, "NG/In1"},         {77, "NG_BPS/In0"},        {78, "NG_BPS/In1"},
        {79, "MIXER/In0-Out0"}, {80, "MIXER/In1-Out0"}, {86, "MIXER/In1-Out3"},    {87, "DELAY/In0"},
        {92, "DELAY/Out3"},     {93, "VU/In0"},         {98, "VU/Out3"},
    };
    for (const auto& [number, label] : labels)
        EXPECT_EQ(labelOf(modules.at(static_cast<std::size_t>(number - 1))), label);
    EXPECT_EQ(moduleKindFromRaw("RMS_DRC"), ModuleKind::compressor);
    EXPECT_FALSE(moduleKindFromRaw("rms_drc") || moduleKindFromRaw("") || peqTypeFromRaw(3));
    EXPECT_EQ(peqTypeFromRaw(2), PeqType::highShelf);
}

TEST(ProfileTest, OnlyNumbersHaveLimitsAndACrosspointIsNoInput) {
    EXPECT_THROW(limitsOf(peq, "type", "In0"), std::invalid_argument);
    EXPECT_TRUE(isInput("In1") && !isInput("Out0") && !isInput("In0-Out0"));
}

TEST(ProfileDeathTest, AModuleThatTheBoardLacksStopsTheProgram) {
    EXPECT_DEATH(K7Q::index(ModuleKind::peq, "In0", 4), "no module PEQ In0 band 4");
    EXPECT_DEATH(ModuleValue::factory({peq, "In0", 7, 4}), "In0 has no band 4");
}

TEST(ProfileTest, TimesSnapToTheBoardsSteps) {
    const double infinity = std::numeric_limits<double>::infinity();
    const struct {
        double ms;
        std::uint32_t step;
    } cases[] = {{96, 95},         {96.6, 97},     {0.2, 1},          {-3, 1},        {5000, 2895},
                 {724, 724},       {104, 103},     {2533, 2171},      {2533.1, 2895}, {1e19, 2895},
                 {infinity, 2895}, {-infinity, 1}, {std::nan(""), 1}, {290, 290},     {1086, 1086}};
    for (const auto& [ms, step] : cases)
        EXPECT_EQ(K7Q::nearestTime(ms), step) << ms;
}

TEST(ValueTest, ValuesHaveTheirBytesOnTheWire) {
    const struct {
        ModuleKind kind;
        ModuleValue value;
        const char* bytes;
    } cases[] = {
        {gain, {GainValue{-6, true, false}}, "00 00 C0 C0 01 00 00 00"},
        {peq, {PeqValue{1000, 3, 1.5F, 200, true}}, "E8 03 00 00 00 00 40 40 00 00 C0 3F C8 01 00 00"},
        {hpf, {FilterValue{120, 9, true}}, "78 00 00 00 09 01 00 00"},
        {gate,
         {DynamicsValue{-2, 4, 1, 2, 3, 4}},
         "00 00 00 C0 00 00 80 40 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00"},
        {limiter,
         {LimiterValue{-2, 4, 1, 3, 4}},
         "00 00 00 C0 00 00 80 40 01 00 00 00 03 00 00 00 04 00 00 00"},
        {gateBypass, {true}, "01 00 00 00"},
        {mixer, {MixerValue{0, false, true}}, "00 00 00 00 00 01 00 00"},
        {delay, {DelayValue{2.5F, false}}, "00 00 20 40 00 00 00 00"},
    };
    for (const auto& [kind, value, bytes] : cases) {
        EXPECT_EQ(hex(value.encoded()), bytes);
        EXPECT_EQ(ModuleValue::decode(kind, value.encoded()), value);
    }
    EXPECT_EQ(ModuleValue::decode(ModuleKind::gain, Bytes{0, 0, 0, 0, 2, 0x80, 0, 0}),
              (ModuleValue{GainValue{0, true, true}}));
    EXPECT_EQ(ModuleValue::decode(ModuleKind::limiterBypass, Bytes{0, 1, 0, 0}), ModuleValue{true});
}

TEST(ValueTest, DefaultsAreThoseOfTheBoardAndReadBackFromRepliesLongEnough) {
    std::map<ModuleKind, std::string> defaults{
        {gain, "db=0 mute=0 phaseNormal=1"},
        {hpf, "fc=20 type=3 bypass=1"},
        {lpf, "fc=22000 type=3 bypass=1"},
        {compressor, "threshold=22 ratio=1 hold=0 attack=45 release=724 knee=0"},
        {limiter, "threshold=24 ratio=1 hold=0 release=724 knee=0"},
        {limiterBypass, "bypass=1"},
        {gate, "threshold=-120 ratio=100 hold=0 attack=45 release=724 knee=0"},
        {gateBypass, "bypass=1"},
        {delay, "ms=0 bypass=1"},
    };
    const std::vector<int> inputBands{81, 329, 1336, 5422};
    const std::vector<int> outputBands{38, 71, 135, 255, 482, 912, 1724, 3258, 6158, 11639};
    const std::set<std::string> open{"In0-Out0", "In1-Out1", "In0-Out2", "In1-Out3"};
    for (const ModuleRef& ref : K7Q::modules()) {
        const auto factory = ModuleValue::factory(ref);
        Bytes bytes = factory ? factory->encoded() : Bytes(32);
        EXPECT_FALSE(ModuleValue::decode(ref.kind, ByteView(bytes).first(bytes.size() - 1)).has_value());
        bytes.resize(40, 0xEE);
        EXPECT_EQ(ModuleValue::decode(ref.kind, bytes), factory) << labelOf(ref);
        if (!factory) continue;
        const auto& bands = isInput(ref.channel) ? inputBands : outputBands;
        defaults[mixer] =
            open.contains(ref.channel) ? "db=0 mute=0 phaseNormal=1" : "db=0 mute=1 phaseNormal=1";
        if (ref.kind == peq)
            defaults[peq] = "fc=" + std::to_string(bands.at(static_cast<std::size_t>(ref.band))) +
                            " gain=0 q=3 type=0 bypass=0";
        EXPECT_EQ(fieldsText(*factory), defaults.at(ref.kind)) << labelOf(ref);
    }
}

}  // namespace
}  // namespace Wendril
