#include "tests/listener.hpp"
#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <tuple>

namespace {

using Json = nlohmann::json;
using Tests::Process;
using Tests::SimulatorProcess;

Json json(const std::string& command) { return Json::parse(Tests::shell(CLI " --json" + command).output); }

// One speaker at the other end of a serial port.
class ProgramsTest : public testing::Test {
protected:
    SimulatorProcess simulator{{"--boards", "1"}};
    const std::string port = " --port " + simulator.path() + " ";
};

TEST_F(ProgramsTest, ModulesAreReadWrittenAndDrawn) {
    EXPECT_EQ(json(port + "scan 1-2").at(0).at("model"), "K7Q-112A");
    EXPECT_EQ(Tests::shell(CLI + port + "write 1 PEQ/In0/0 gain=6 bypass=0").status, 0);
    EXPECT_EQ(json(port + "read 1 PEQ/In0/0").at(0).at("value").at("gain"), 6);
    EXPECT_EQ(json(port + "read 1").size(), 92U);
    EXPECT_NEAR(*std::ranges::max_element(json(port + "response 1 In0").at("curves").at(0).at("db")), 6, 0.1);
    EXPECT_EQ(Tests::shell(CLI + port + "write 1 LPF/Out3 fc=1000 type=9 bypass=0").status, 0);
    EXPECT_LT(json(port + "response 1 Out3").at("curves").at(0).at("db").back(), -40);
    EXPECT_EQ(json(port + "meters 1").size(), 6U);
    EXPECT_EQ(simulator.end(SIGTERM), 0) << simulator.rest();
}

TEST_F(ProgramsTest, PresetsAreStoredRecalledAndDeleted) {
    const auto status = [this](const char* command) { return Tests::shell(CLI + port + command).status; };
    EXPECT_EQ(status("write 1 GAIN/In0 db=-6"), 0);
    EXPECT_EQ(status("preset 1 save 2 'Igreja São João'"), 0);
    EXPECT_EQ(json(port + "preset 1 list").at("presets"),
              Json::array({{{"number", 2}, {"name", "Igreja São João"}}}));
    EXPECT_EQ(status("write 1 GAIN/In0 db=0"), 0);
    EXPECT_EQ(status("preset 1 load 2"), 0);
    EXPECT_EQ(json(port + "read 1 GAIN/In0").at(0).at("value").at("db"), -6);
    EXPECT_EQ(status("preset 1 load 7"), 3) << "an empty slot";
    EXPECT_EQ(status("preset 1 save 2 Outro </dev/null"), 1) << "asks before it replaces";
    EXPECT_EQ(status("preset 1 save 3 ' '"), 2) << "no name";
    EXPECT_EQ(status("--yes preset 1 delete 2"), 0);
    EXPECT_TRUE(json(port + "preset 1 list").at("presets").empty());
}

TEST_F(ProgramsTest, AFailureIsOneClearLine) {
    const std::tuple<std::string, int, std::string> cases[] = {
        {"info 2", 4, "a caixa 02 não respondeu em " + simulator.path()},
        {"info 2 --json", 4, R"("address":2,"function":3)"},
        {"scan 7-8", 4, "nenhuma caixa respondeu de 7-8"},
        {"scan 250-255", 2, "de 1 a 254"},
        {"read 1,3-2", 2, "1-3,5 ou all"},
        {"scna", 2, "seria scan?"},
        {"preset 1 sav 2 x", 2, "seria save?"},
        {"meters 1 --wacth", 2, "seria --watch?"},
        {"address </dev/null", 1, "nada foi mudado"},
        {"info 1 >/dev/full", 1, "No space left"},
        {"--json f\xFF", 2, "f\uFFFD"},
        {"run " + testing::TempDir(), 1, "não foi possível ler"},
    };
    for (const auto& [command, status, says] : cases) {
        const auto result = Tests::shell(CLI + port + command);
        EXPECT_EQ(result.status, status) << command;
        EXPECT_NE(result.output.find(says), std::string::npos) << result.output;
        EXPECT_EQ(std::ranges::count(result.output, '\n'), 1) << result.output;
    }
}

TEST_F(ProgramsTest, AFileOfCommandsStopsAtItsFirstFailureOrGoesOn) {
    const std::string script =
        "printf '# ajuste\\nwrite all GAIN/In0 db=-5\\nfoo\\npreset 1 save 2 \"Duas palavras\"\\n' | " CLI +
        port;
    const auto stopped = Tests::shell(script + "run -");
    EXPECT_EQ(stopped.status, 2);
    EXPECT_NE(stopped.output.find("linha 3: comando desconhecido: foo"), std::string::npos) << stopped.output;
    EXPECT_EQ(json(port + "read 1 GAIN/In0").at(0).at("value").at("db"), -5);
    EXPECT_TRUE(json(port + "preset 1 list").at("presets").empty());
    EXPECT_EQ(Tests::shell(script + "run - --keep-going").status, 2);
    EXPECT_EQ(json(port + "preset 1 list").at("presets").at(0).at("name"), "Duas palavras");
    const auto asked = Tests::shell("printf 'preset 1 save 2 B\\ns\\n' | " CLI + port + "run -");
    EXPECT_NE(asked.output.find("junte --yes"), std::string::npos) << "a command is no answer";
}

TEST(HelpTest, ACommandTellsAllThatItTakesAlsoBesideAMistake) {
    for (const char* const command : {" preset 1 save --help", " preset x save 99 --help"}) {
        const auto help = Tests::shell(CLI + std::string(command));
        EXPECT_EQ(help.status, 0) << help.output;
        for (const char* const part :
             {"CAIXAS save", "\n  N ", "\n  NOME", "\n  CAIXAS", "--bridge", "3 recusado"})
            EXPECT_NE(help.output.find(part), std::string::npos) << part << " in " << help.output;
    }
}

TEST(RefusalTest, ABoardThatRefusesIsToldWithWhatItHolds) {
    const std::string held = testing::TempDir() + "held.json";
    const std::string wanted = testing::TempDir() + "wanted.json";
    EXPECT_EQ(Tests::shell("printf 'preset 1 save 5 Culto\\nbackup 1\\n' | " CLI
                           " --demo 1 run - | tail -n +2 >" +
                           held)
                  .status,
              0);
    EXPECT_EQ(Tests::shell("printf 'write 1 DELAY/Out1 ms=2\\nbackup 1\\n' | " CLI
                           " --demo 1 run - | sed -n '/^{/,$p' >" +
                           wanted)
                  .status,
              0);
    SimulatorProcess simulator({"--load", held, "--refuse", "1"});
    const std::string cli = CLI " --yes --port " + simulator.path();
    for (const auto& [command, says] : {std::pair{std::string(" write 1 GAIN/In0 db=-6"), "a caixa tem db=0"},
                                        {" preset 1 save 2 Show", "o preset 2 está vazio"},
                                        {" preset 1 save 5 Show", "o preset 5 é \"Culto\""},
                                        {" preset 1 load 5", "o atual é o 0"},
                                        {" peq import 1 In0 " FILTERS "/point.txt", "a caixa tem fc=81"},
                                        {" restore " + wanted, "DELAY/Out1 da caixa 01 foi recusado"}}) {
        const auto result = Tests::shell(cli + command);
        EXPECT_EQ(result.status, 3) << command;
        EXPECT_NE(result.output.find(says), std::string::npos) << result.output;
    }
}

TEST(ProcessTest, AProgramThatPrintsMoreThanAPipeHoldsComesToItsEnd) {
    Process printing({"/bin/sh", "-c", "head -c 300000 /dev/zero; exit 7"});
    EXPECT_EQ(printing.end(), 7);
    EXPECT_EQ(printing.rest().size(), 300'000U);
}

TEST_F(ProgramsTest, AWatchEndsWithItsChainAndGivesThePortBackWhenInterrupted) {
    Process interrupted({CLI, "--port", simulator.path(), "--verbose", "meters", "1", "--watch"});
    EXPECT_EQ(interrupted.line().substr(0, 3), "-> ");
    EXPECT_EQ(interrupted.end(SIGINT), 130);
    Process terminated({CLI, "--port", simulator.path(), "meters", "1", "--watch"});
    EXPECT_EQ(terminated.line().substr(0, 3), "In0");
    EXPECT_EQ(terminated.end(SIGTERM), 143);
    Process watch({CLI, "--port", simulator.path(), "meters", "1", "--watch"});
    EXPECT_EQ(watch.line().substr(0, 3), "In0");
    simulator.end(SIGKILL);
    EXPECT_NE(watch.rest().find("corvane-cli: "), std::string::npos);
    EXPECT_EQ(watch.end(), 1);
}

TEST(WatchTest, ASilentSpeakerShowsGapsAndEndsItAtTheTenth) {
    SimulatorProcess simulator({"--boards", "1", "--lose", "1"});
    const auto watch = Tests::shell(CLI " --json --port " + simulator.path() + " meters 1 --watch");
    EXPECT_EQ(watch.status, 4);
    EXPECT_EQ(std::ranges::count(watch.output, '\n'), 10) << watch.output;
    EXPECT_TRUE(watch.output.starts_with("{\"gap\":true}\n")) << watch.output;
}

TEST(ReportTest, WhatABoardSendsIsTextInThePage) {
    const std::string page = testing::TempDir() + "report.html";
    const auto made = Tests::shell(R"(printf 'preset 1 save 1 "<i>&\047"\nreport 1 --html )" + page +
                                   "\\n' | " CLI " --demo 1 run -");
    EXPECT_EQ(made.status, 0) << made.output;
    const std::string html = Tests::shell("cat " + page).output;
    for (const char* const part :
         {"&lt;i&gt;&amp;&#39;", "Entrada 2 (In1)", "<polyline", "Bessel 12 dB", "Noise gate"})
        EXPECT_NE(html.find(part), std::string::npos) << part;
    EXPECT_EQ(html.find("<i>"), std::string::npos);
}

TEST(AddressingTest, ANewChainIsAddressedInItsOrderOverABridge) {
    SimulatorProcess simulator({"--boards", "17", "--unaddressed", "--tcp", "0", "--listen", "127.0.0.2"});
    const std::string bridge = " --bridge " + simulator.path();
    EXPECT_EQ(Tests::shell(CLI + bridge + " scan 1-2").status, 4);
    const Json found = json(bridge + " address --yes");
    ASSERT_EQ(found.size(), 16U);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(found[i].at("address"), i + 1);
        EXPECT_EQ(found[i].at("serial"), std::to_string(24074001 + i));
    }
    EXPECT_EQ(json(bridge + " scan"), found);
    EXPECT_EQ(simulator.end(SIGINT), 0) << simulator.rest();
}

TEST(LinkTest, InterruptingAConnectThatHangsEndsItAtOnce) {
    const Tests::DeafListener deaf;
    Process info({CLI, "--bridge", "127.0.0.1:" + std::to_string(deaf.port()), "info", "1"});
    info.awaitHandlerOf(SIGINT);
    const auto interrupted = std::chrono::steady_clock::now();
    EXPECT_EQ(info.end(SIGINT), 130);
    EXPECT_LT(std::chrono::steady_clock::now() - interrupted, std::chrono::seconds(4));  // the limit is 5
}

TEST(SimulatorProgramTest, LogsReportsFaultsAndRemovesItsLink) {
    const std::string link =
        std::filesystem::temp_directory_path() / ("corvane-port-" + std::to_string(::getpid()));
    SimulatorProcess simulator({"--pty", link, "--mute", "1:0", "--log"});
    EXPECT_EQ(Tests::shell(CLI " info 2 --port " + link).status, 0);
    EXPECT_EQ(Tests::shell(CLI " info 1 --port " + link).status, 4) << "a dead board";
    EXPECT_EQ(Tests::shell("printf hello >" + link).status, 0);
    EXPECT_EQ(simulator.end(SIGTERM), 1);
    const std::string output = simulator.rest();
    for (const char* const text : {"host  -> 55", "board <- 55", "FAULT of the host: bytes", "the host: 1\n"})
        EXPECT_NE(output.find(text), std::string::npos) << output;
    EXPECT_FALSE(std::filesystem::is_symlink(link));
}

}  // namespace
