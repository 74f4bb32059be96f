#include "tests/listener.hpp"
#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>

namespace {

using Json = nlohmann::json;
using Tests::Process;
using Tests::SimulatorProcess;

struct Result {
    int status;
    std::string output;
};

// corvane-cli, to its end.
Result cli(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), CLI);
    Process process(std::move(arguments));
    std::string output = process.rest();
    return {process.end(), std::move(output)};
}

// One speaker at the other end of a serial port.
class ProgramsTest : public testing::Test {
protected:
    Result run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--port", simulator.path()});
        return cli(std::move(arguments));
    }

    Json json(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "--json");
        return Json::parse(run(std::move(arguments)).output);
    }

    SimulatorProcess simulator{{"--boards", "1"}};
};

TEST_F(ProgramsTest, ModulesAreReadWrittenAndDrawn) {
    EXPECT_EQ(json({"scan", "1-2"}).at(0).at("model"), "K7Q-112A");
    EXPECT_EQ(run({"write", "1", "PEQ/In0/0", "gain=6", "bypass=0"}).status, 0);
    const Json band = json({"read", "1", "PEQ/In0/0"}).at(0).at("value");
    EXPECT_EQ(band.at("gain"), 6);
    EXPECT_EQ(band.at("bypass"), false);
    EXPECT_EQ(json({"read", "1"}).size(), 92U);
    const Json curve = json({"response", "1", "In0"});
    EXPECT_NEAR(*std::ranges::max_element(curve.at("db")), 6, 0.1);
    EXPECT_EQ(json({"meters", "1"}).size(), 6U);
    EXPECT_EQ(simulator.end(SIGTERM), 0) << simulator.rest();
}

TEST_F(ProgramsTest, PresetsAreStoredRecalledAndDeleted) {
    EXPECT_EQ(run({"write", "1", "GAIN/In0", "db=-6"}).status, 0);
    EXPECT_EQ(run({"preset", "1", "save", "2", "Igreja São João"}).status, 0);
    EXPECT_EQ(json({"preset", "1", "list"}).at("presets").at(0),
              (Json{{"number", 2}, {"name", "Igreja São João"}}));
    EXPECT_EQ(run({"write", "1", "GAIN/In0", "db=0"}).status, 0);
    EXPECT_EQ(run({"preset", "1", "load", "2"}).status, 0);
    EXPECT_EQ(json({"read", "1", "GAIN/In0"}).at(0).at("value").at("db"), -6);
    EXPECT_EQ(run({"preset", "1", "load", "7"}).status, 1) << "an empty slot";
    EXPECT_EQ(run({"preset", "1", "delete", "2"}).status, 0);
    EXPECT_TRUE(json({"preset", "1", "list"}).at("presets").empty());
}

TEST_F(ProgramsTest, EveryFailureIsOneClearLine) {
    const struct {
        std::vector<std::string> arguments;
        int status;
    } cases[] = {
        {{"info", "2"}, 1},
        {{"scan", "7-8"}, 1},
        {{"scan", "8-7"}, 2},
        {{"read", "1", "VU/In0"}, 2},
        {{"write", "1", "GAIN/In0", "db=7"}, 2},
        {{"write", "1", "GAIN/In0", "volume=7"}, 2},
        {{"preset", "1", "load", "32"}, 2},
        {{"response", "1", "Out4"}, 2},
        {{"sing"}, 2},
        {{"--port", "/dev/none", "info", "1"}, 2},
    };
    for (const auto& c : cases) {
        const Result result = run(c.arguments);
        EXPECT_EQ(result.status, c.status) << result.output;
        EXPECT_EQ(result.output.find('\n') + 1, result.output.size()) << result.output;
    }
    EXPECT_EQ(cli({"--port", "/dev/none", "info", "1"}).status, 1);
    EXPECT_EQ(cli({"info", "1"}).status, 2);
}

TEST_F(ProgramsTest, AResultThatCannotBeWrittenIsAFailure) {
    Process info({"/bin/sh", "-c", std::string(CLI) + " --port " + simulator.path() + " info 1 > /dev/full"});
    EXPECT_NE(info.line().find("No space left on device"), std::string::npos);
    EXPECT_EQ(info.end(), 1);
}

TEST(AddressingTest, ANewChainIsAddressedInItsOrderOverABridge) {
    SimulatorProcess simulator({"--boards", "4", "--unaddressed", "--tcp", "0"});
    const std::string bridge = "127.0.0.1:" + simulator.port();
    EXPECT_EQ(cli({"--bridge", bridge, "scan", "1-2"}).status, 1);
    const Json found = Json::parse(cli({"--json", "--bridge", bridge, "address", "--yes"}).output);
    ASSERT_EQ(found.size(), 4U);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(found[i].at("address"), i + 1);
        EXPECT_EQ(found[i].at("serial").get<std::string>().back(), static_cast<char>('1' + i));
    }
    EXPECT_EQ(simulator.end(SIGINT), 0) << simulator.rest();
}

TEST(LinkTest, AKilledChainEndsTheWatchWithAClearLine) {
    SimulatorProcess simulator({});
    Process watch({CLI, "--port", simulator.path(), "meters", "1", "--watch"});
    EXPECT_NE(watch.line(), "");
    simulator.end(SIGKILL);
    const auto killed = std::chrono::steady_clock::now();
    EXPECT_NE(watch.rest().find("corvane-cli: "), std::string::npos);
    EXPECT_EQ(watch.end(), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - killed, std::chrono::seconds(10));
}

TEST(LinkTest, InterruptingTheWatchGivesThePortBack) {
    SimulatorProcess simulator({});
    Process watch({CLI, "--port", simulator.path(), "meters", "1", "--watch"});
    EXPECT_NE(watch.line(), "");
    EXPECT_EQ(watch.end(SIGINT), 130);
    EXPECT_EQ(cli({"--port", simulator.path(), "info", "1"}).status, 0);
}

TEST(LinkTest, InterruptingAConnectThatHangsEndsItAtOnce) {
    const Tests::DeafListener deaf;
    Process info({CLI, "--bridge", "127.0.0.1:" + std::to_string(deaf.port()), "info", "1"});
    info.awaitHandlerOf(SIGINT);
    const auto interrupted = std::chrono::steady_clock::now();
    EXPECT_EQ(info.end(SIGINT), 130);
    EXPECT_LT(std::chrono::steady_clock::now() - interrupted,
              std::chrono::seconds(4));  // not the 5 of the limit
}

TEST(SimulatorProgramTest, TheLinkToItsPortGoesWithIt) {
    const auto link = std::filesystem::temp_directory_path() / ("corvane-port-" + std::to_string(::getpid()));
    SimulatorProcess simulator({"--pty", link});
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(cli({"--port", link, "info", "1"}).status, 0);
    EXPECT_EQ(simulator.end(SIGTERM), 0);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(link)));
}

TEST(SimulatorProgramTest, AHostThatBreaksTheProtocolShowsInTheStatus) {
    SimulatorProcess simulator({"--log"});
    const int port = ::open(simulator.path().c_str(), O_RDWR | O_NOCTTY);
    const std::string noise = "hello";
    EXPECT_EQ(::write(port, noise.data(), noise.size()), 5);
    EXPECT_NE(simulator.line().find("FAULT"), std::string::npos);
    EXPECT_EQ(simulator.end(SIGTERM), 1);
    ::close(port);
}

TEST(SimulatorProgramTest, WrongOptionsAreRefused) {
    for (const std::vector<std::string>& options :
         std::vector<std::vector<std::string>>{{"--boards", "0"},
                                               {"--boards", "255"},
                                               {"--lose", "1.5"},
                                               {"--delay", "5"},
                                               {"--mute", "4:1"},
                                               {"--tcp", "1", "--pty", "x"},
                                               {"--boards"},
                                               {"--sing"}}) {
        SimulatorProcess simulator(options);
        EXPECT_EQ(simulator.end(), 2) << options.front();
    }
}

}  // namespace
