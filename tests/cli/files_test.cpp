#include "cli/file.hpp"
#include "cli/filtertext.hpp"
#include "cli/showfile.hpp"
#include "tests/chain.hpp"
#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <functional>

using namespace Cli;
using namespace Wendril;
using Json = nlohmann::json;
using Tests::failureOf;
using Tests::SimulatorProcess;

namespace {

const std::string folder = testing::TempDir();

}  // namespace

TEST(FilterTextTest, DialectsOfMeasurementProgramsBecomeBands) {
    const std::tuple<const char*, std::vector<PeqValue>, std::size_t> cases[] = {
        {"comma.txt", {{63, -4.5F, 3, 0, false}, {1250, -12, 1, 0, false}, {80, 3, 0.70710677F, 1, true}}, 1},
        {"point.txt",
         {{1250, -4.5F, 3, 0, false}, {2500, 2, 0.71F, 2, false}, {8000, 1, 1.4142135F, 0, false}},
         2},
    };
    for (const auto& [file, bands, remarks] : cases) {
        const FilterText read = FilterText::parse(readFile(std::string(FILTERS "/") + file));
        EXPECT_EQ(read.bands, bands) << file;
        EXPECT_EQ(read.remarks.size(), remarks) << file;
        EXPECT_EQ(FilterText::parse(filterText(bands)).bands, bands) << "what is written reads back";
    }
}

TEST(ShowFileTest, WhatIsNoShowIsRefusedWithItsPlace) {
    const Json good = Json::parse(Tests::shell(CLI " --demo 2 backup").output);
    const std::pair<std::function<void(Json&)>, const char*> cases[] = {
        {[](Json& j) { j["version"] = 2; }, "a versão é 2"},
        {[](Json& j) { j["speakers"][1]["address"] = 1; }, "está repetida"},
        {[](Json& j) { j["speakers"][0]["settings"].erase("PEQ/In0/3"); }, "falta PEQ/In0/3 da caixa 01"},
        {[](Json& j) { j["speakers"][0]["settings"]["X"] = 1; }, "módulos que não se conhecem"},
        {[](Json& j) { j["speakers"][0]["settings"]["GAIN/In0"]["db"] = "0"; }, "db de GAIN/In0 da caixa 01"},
        {[](Json& j) { j["speakers"][0]["settings"]["GAIN/In0"]["db"] = 1e300; }, "grande demais"},
        {[](Json& j) { j["speakers"][0]["settings"]["GAIN/In0"]["db"] = 60; }, "vai de -60 a 6"},
        {[](Json& j) { j["speakers"][0]["settings"]["RMS_DRC/Out0"]["attack"] = 96; }, "tempo da placa"},
        {[](Json& j) {
             j["speakers"][0]["presets"] = {{{"number", 32}, {"name", ""}}};
         },
         "vai de 0 a 31"},
    };
    for (const auto& [spoil, says] : cases) {
        Json json = good;
        spoil(json);
        const std::string failure = failureOf([&] { checkLimits(Show::parse(json.dump())); });
        EXPECT_NE(failure.find(says), std::string::npos) << failure;
    }
    EXPECT_NE(failureOf([] { Show::parse(std::string(1000, '[')); }).find("um dentro do outro"),
              std::string::npos);
    checkLimits(Show::parse(good.dump()));
}

TEST(ShowTest, AShowIsSavedComparedAndRestoredOnABadLine) {
    const std::string file = folder + "show.json";
    const std::string dumped = folder + "dumped.json";
    {
        SimulatorProcess first({"--boards", "2", "--dump", dumped});
        const std::string cli = CLI " --yes --port " + first.path();
        EXPECT_EQ(Tests::shell(cli + " write all DELAY/Out1 ms=2,5 bypass=0").status, 0);
        EXPECT_EQ(Tests::shell(cli + " write 2 PEQ/Out3/9 gain=-3,3 type=lowshelf").status, 0);
        EXPECT_EQ(Tests::shell(cli + " backup >" + file).status, 0);
        EXPECT_EQ(first.end(SIGTERM), 0);
    }
    EXPECT_EQ(Show::read(dumped), Show::read(file));
    EXPECT_EQ(Tests::shell("/usr/bin/python3 -m jsonschema -i " + file + " " SCHEMA).status, 0);
    SimulatorProcess second({"--boards", "2", "--lose", "0.004", "--corrupt", "0.004"});
    const std::string cli = CLI " --port " + second.path();
    EXPECT_EQ(Tests::shell(cli + " diff " + file).status, 3);
    EXPECT_EQ(Tests::shell(cli + " restore --dry-run " + file).status, 0);
    EXPECT_EQ(Tests::shell(cli + " diff " + file).status, 3) << "a dry run writes nothing";
    EXPECT_EQ(Tests::shell(cli + " restore " + file).status, 0);
    EXPECT_EQ(Tests::shell(cli + " diff " + file).status, 0);
    EXPECT_EQ(second.end(SIGTERM), 0) << second.rest();
}

TEST(CheckTest, ALossIsCounted) {
    SimulatorProcess simulator({"--boards", "1", "--lose", "0.05"});
    const auto check = Tests::shell(CLI " --json --port " + simulator.path() + " check 1 --seconds 1");
    EXPECT_EQ(check.status, 4);
    EXPECT_NE(check.output.find("ruim: perdas"), std::string::npos) << check.output;
}
