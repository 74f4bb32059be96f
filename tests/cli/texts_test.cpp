#include "cli/modules.hpp"

#include "cli/curves.hpp"
#include "cli/link.hpp"
#include "cli/numbers.hpp"
#include "cli/output.hpp"
#include "cli/ports.hpp"
#include "tests/chain.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/limits.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>

using namespace Cli;
using namespace Wendril;
using Tests::failureOf;

TEST(ModulesTest, AModuleIsNamedByItsLabelOrItsNumber) {
    EXPECT_EQ(parseModule("peq/out2/4").index, K7Q::index(ModuleKind::peq, "Out2", 4));
    for (const ModuleRef& ref : K7Q::modules()) {
        EXPECT_EQ(parseModule(labelOf(ref)), ref);
        EXPECT_EQ(parseModule(std::to_string(ref.index)), ref);
    }
}

TEST(ModulesTest, FieldsAreSetByNameAndTheOthersStay) {
    ModuleValue value{GainValue{1, false, true}};
    for (const char* const change : {"db=-3,5", "mute=1"})
        parseChange(parseModule("GAIN/In0"), change)(value);
    EXPECT_EQ(value, (ModuleValue{GainValue{-3.5F, true, true}}));
    ModuleValue filter{FilterValue{}};
    for (const char* const change : {"fc=2,3k", "type=linkwitz24"})
        parseChange(parseModule("HPF/Out0"), change)(filter);
    EXPECT_EQ(filter, (ModuleValue{FilterValue{2300, 9, false}}));
}

TEST(ModulesTest, WhatAModuleCannotTakeIsRefusedWithWhatItTakes) {
    const char* const cases[][3] = {
        {"99", "db=0", "não há módulo 99; os números vão de 1 a 98"},
        {"PEQ/In0/4", "gain=0", "PEQ/In0/0 a PEQ/In0/3"},
        {"REVERB/In0", "db=0", "GAIN"},
        {"GAIN/In0", "db=6.1", "vai de -60 a 6"},
        {"GAIN/Out0", "db=15.1", "vai de -60 a 15"},
        {"GAIN/In0", "db=nan", "vai de"},
        {"GAIN/In0", "db=", "precisa de um número"},
        {"GAIN/In0", "mute=2", "0 ou 1"},
        {"GAIN/In0", "level=1", "os campos são db, mute, phaseNormal"},
        {"GAIN/In0", "db", "campo=valor"},
        {"PEQ/In0/0", "fc=20.5", "número inteiro"},
        {"PEQ/In0/0", "type=3", "peak"},
        {"HPF/Out0", "type=99", "Linkwitz 24 dB"},
        {"RMS_DRC/Out0", "attack=96", "o mais próximo é 95"},
        {"VU/In0", "db=1", "medidor"},
    };
    for (const auto& [module, change, named] : cases) {
        const std::string failure =
            failureOf([module = module, change = change] { parseChange(parseModule(module), change); });
        EXPECT_NE(failure.find(named), std::string::npos) << module << " " << change << ": " << failure;
    }
}

TEST(ModulesTest, EveryNumberOfEveryModuleHasItsLimits) {
    for (const ModuleRef& ref : K7Q::modules()) {
        auto value = ModuleValue::factory(ref);
        if (!value) continue;
        forEachField(*value, [&ref]<class Field>(const std::string& name, const Field&) {
            if constexpr (std::is_same_v<Field, float> || std::is_same_v<Field, std::uint32_t>) {
                const Limits limits = limitsOf(ref.kind, name, ref.channel);
                const auto refusal = [&](double number) {
                    return failureOf([&] { parseChange(ref, name + "=" + numberText(number)); });
                };
                EXPECT_EQ(refusal(limits.lowest), "");
                EXPECT_EQ(refusal(limits.highest), "");
                EXPECT_NE(refusal(limits.highest + 1), "") << labelOf(ref) << " " << name;
                EXPECT_NE(refusal(limits.lowest - 1), "") << labelOf(ref) << " " << name;
            }
        });
    }
}

TEST(EndpointTest, ABridgeIsAHostWithOrWithoutAPort) {
    EXPECT_EQ(BridgeAddress::parse("10.0.0.7"), (BridgeAddress{"10.0.0.7", 8899}));
    EXPECT_EQ(BridgeAddress::parse("bridge.local:23"), (BridgeAddress{"bridge.local", 23}));
    EXPECT_EQ(BridgeAddress::parse(" 10.0.0.7:23 "), (BridgeAddress{"10.0.0.7", 23}));
    EXPECT_EQ(BridgeAddress::parse("::1"), (BridgeAddress{"::1", 8899}));
    EXPECT_EQ(BridgeAddress::parse("[::1]:23"), (BridgeAddress{"::1", 23}));
    for (const char* const text :
         {"", ":8899", "host:", "host:0", "host:65536", "host:80x", "[]:1", "[::1]23"})
        EXPECT_NE(failureOf([text] { BridgeAddress::parse(text); }), "") << text;
}

TEST(OutputTest, ColumnsAlignAlsoUnderLettersOfTwoBytes) {
    EXPECT_EQ(table({"nº", "nome", "dB"}, {{"7", "São João", "-3"}, {"12", "Festa", "0"}}),
              "nº  nome      dB\n"
              "7   São João  -3\n"
              "12  Festa     0\n");
}

TEST(OutputTest, WhatABoardSendsCannotActOnATerminal) {
    EXPECT_EQ(printable("a\x1B[2J\x7F\xC2\x9B\nã"), "a\uFFFD[2J\uFFFD\uFFFD\nã");
    EXPECT_EQ(table({"x"}, {{"a\rb\n"}}), "x\na\x7F"
                                          "b\x7F\n");
}

TEST(OutputTest, NumbersReadTheSameInEveryProgram) {
    EXPECT_EQ(fixed(-0.25, 2), "-0.25");
    EXPECT_EQ(fixed(std::numeric_limits<double>::max(), 0).size(), 309U);
    EXPECT_EQ(fixed(std::numeric_limits<double>::quiet_NaN(), 1), "-");
    EXPECT_EQ(jsonOf(ModuleValue{MixerValue{-3.3F, true, false}}).dump(),
              R"({"db":-3.3,"mute":true,"phaseNormal":false})");
    EXPECT_EQ(jsonOf(std::numeric_limits<float>::infinity()).dump(), "null");
}

TEST(CurvesTest, ASumKeepsDelayPolarityGainAndMute) {
    ModuleValues values;
    for (const ModuleRef& module : K7Q::modules())
        if (const auto value = ModuleValue::factory(module)) values.emplace(module.index, *value);
    const auto set = [&values](const char* module, const char* change) {
        parseChange(parseModule(module), change)(values.at(parseModule(module).index));
    };
    // At 1 kHz, where the flat equalisers and open crossovers have no part in it.
    const auto levelAt1k = [&values] {
        const auto db = sumOf({curveOf("Out0", values, true), curveOf("Out1", values, true)}).db();
        const auto& hz = curveFrequencies();
        return db[static_cast<std::size_t>(std::ranges::lower_bound(hz, 1000) - hz.begin())];
    };
    EXPECT_NEAR(levelAt1k(), 6.02, 0.01);
    set("DELAY/Out1", "ms=0.5");
    EXPECT_NEAR(levelAt1k(), 6.02, 0.01) << "bypassed";
    set("DELAY/Out1", "bypass=0");
    EXPECT_LT(levelAt1k(), -20) << "half a period late";
    set("GAIN/Out1", "phaseNormal=0");
    EXPECT_NEAR(levelAt1k(), 6.02, 0.01) << "late and inverted";
    set("GAIN/Out1", "mute=1");
    EXPECT_NEAR(levelAt1k(), 0, 0.01);
    set("GAIN/Out0", "db=-3");
    EXPECT_NEAR(levelAt1k(), -3, 0.01);
}

TEST(PortsTest, AnAdapterIsDescribedAndOwnPortsWithHardwareComeLast) {
    namespace fs = std::filesystem;
    const fs::path root = fs::path(testing::TempDir()) / "ports";
    fs::remove_all(root);
    const auto write = [&root](const fs::path& file, const char* text) {
        fs::create_directories((root / file).parent_path());
        std::ofstream(root / file) << text << "\n";
    };
    const fs::path adapter = "devices/usb1/1-1";
    const fs::path port = adapter / "1-1:1.0/ttyUSB0";
    write(adapter / "product", "USB Serial");
    write(adapter / "manufacturer", "Vendor");
    write(adapter / "serial", "A1");
    fs::create_directories(root / "sys/ttyUSB0");
    fs::create_directories(root / port);
    fs::create_directory_symlink(root / port, root / "sys/ttyUSB0/device");
    fs::create_directory_symlink(root / "drivers/ftdi_sio", root / port / "driver");
    write("sys/ttyS0/type", "4");
    write("sys/ttyS1/type", "0");
    for (const char* const name : {"ttyS0", "ttyS1", "ttyUSB0"})
        write(fs::path("dev") / name, "");
    const auto found = portsIn(root / "dev", root / "sys", true);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].path, root / "dev/ttyUSB0");
    EXPECT_EQ(found[0].product + "," + found[0].vendor + "," + found[0].serial + "," + found[0].driver,
              "USB Serial,Vendor,A1,ftdi_sio");
    EXPECT_TRUE(found[0].mayOpen);
    EXPECT_EQ(found[1].path, root / "dev/ttyS0");
    EXPECT_EQ(portsIn(root / "dev", root / "sys", false).size(), 1U);
}
