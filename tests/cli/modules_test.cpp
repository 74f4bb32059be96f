#include "cli/modules.hpp"

#include "cli/link.hpp"
#include "tests/chain.hpp"

#include <gtest/gtest.h>

namespace Cli {
namespace {

using namespace Wendril;
using Tests::failureOf;

TEST(ModulesTest, AModuleIsNamedByItsLabelOrItsNumber) {
    EXPECT_EQ(parseModule("GAIN/In0").index, 1);
    EXPECT_EQ(parseModule("peq/out2/4").index, K7Q::index(ModuleKind::peq, "Out2", 4));
    EXPECT_EQ(parseModule("92"), K7Q::module(92));
    for (const ModuleRef& ref : K7Q::modules())
        EXPECT_EQ(parseModule(labelOf(ref)), ref);
}

TEST(ModulesTest, AWrongModuleIsRefusedWithWhatThereIs) {
    EXPECT_EQ(failureOf([] { parseModule("99"); }), "não há módulo 99; os números vão de 1 a 98");
    EXPECT_NE(failureOf([] { parseModule("PEQ/In0/4"); }).find("PEQ/In0/0 a PEQ/In0/3"), std::string::npos);
    EXPECT_NE(failureOf([] { parseModule("REVERB/In0"); }).find("GAIN"), std::string::npos);
    for (const char* const text : {"", "0", "256", "-1", "GAIN", "GAIN/In0 ", "GAIN/Out4", "1.0"})
        EXPECT_NE(failureOf([text] { parseModule(text); }), "") << text;
}

ModuleValue changed(const std::string& module, const std::vector<std::string>& assignments) {
    const ModuleRef ref = parseModule(module);
    ModuleValue value = ModuleValue::factory(ref).value();
    for (const std::string& assignment : assignments)
        parseChange(ref, assignment)(value);
    return value;
}

TEST(ModulesTest, FieldsAreSetByNameAndTheOthersStay) {
    EXPECT_EQ(changed("GAIN/In0", {"db=-3,5", "mute=1"}), (ModuleValue{GainValue{-3.5F, true, true}}));
}

TEST(ModulesTest, WhatAModuleCannotTakeIsRefusedBeforeAnythingIsSent) {
    const struct {
        const char* module;
        const char* assignment;
        const char* named;  // what the refusal tells
    } cases[] = {
        {"GAIN/In0", "db=6.1", "vai de -60 a 6"},
        {"GAIN/Out0", "db=15.1", "vai de -60 a 15"},
        {"GAIN/In0", "db=nan", "db"},
        {"GAIN/In0", "db=inf", "vai de"},
        {"GAIN/In0", "db=", "precisa de um número"},
        {"GAIN/In0", "db=1x", "precisa de um número"},
        {"GAIN/In0", "mute=2", "0 ou 1"},
        {"GAIN/In0", "level=1", "os campos são db, mute, phaseNormal"},
        {"GAIN/In0", "db", "campo=valor"},
        {"PEQ/In0/0", "fc=20.5", "número inteiro"},
        {"PEQ/In0/0", "fc=19", "vai de 20 a 22000"},
        {"PEQ/In0/0", "type=3", "peak"},
        {"HPF/Out0", "type=99", "Linkwitz 24 dB"},
        {"RMS_DRC/Out0", "attack=96", "o mais próximo é 95"},
        {"DELAY/Out0", "ms=5.01", "vai de 0 a 5"},
    };
    for (const auto& c : cases) {
        const std::string failure = failureOf([&c] { changed(c.module, {c.assignment}); });
        EXPECT_NE(failure.find(c.named), std::string::npos)
            << c.module << " " << c.assignment << ": " << failure;
    }
    const ModuleRef meter = parseModule("VU/In0");
    EXPECT_NE(failureOf([&meter] { parseChange(meter, "db=1"); }).find("medidor"), std::string::npos);
}

TEST(EndpointTest, ABridgeIsAHostWithOrWithoutAPort) {
    EXPECT_EQ(Endpoint::ofBridge("10.0.0.7").bridgePort, 8899);
    EXPECT_EQ(Endpoint::ofBridge("bridge.local:23").bridge, "bridge.local");
    EXPECT_EQ(Endpoint::ofBridge("bridge.local:23").bridgePort, 23);
    EXPECT_EQ(Endpoint::ofBridge("::1").bridge, "::1");
    EXPECT_EQ(Endpoint::ofBridge("::1").bridgePort, 8899);
    EXPECT_EQ(Endpoint::ofBridge("[::1]:23").bridge, "::1");
    EXPECT_EQ(Endpoint::ofBridge("[::1]:23").bridgePort, 23);
    for (const char* const text :
         {"", ":8899", "host:", "host:0", "host:65536", "host:80x", "[]:1", "[::1]23", "[::1]:"})
        EXPECT_NE(failureOf([text] { Endpoint::ofBridge(text); }), "") << text;
}

}  // namespace
}  // namespace Cli
