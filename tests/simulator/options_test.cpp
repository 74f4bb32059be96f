#include "simulator/options.hpp"

#include <gtest/gtest.h>

#include <tuple>

using namespace Simulator;
using namespace std::chrono_literals;

TEST(SimulatorOptionsTest, EveryOptionSetsWhatItNames) {
    Cli::CommandLine commandLine("corvane-sim", "", Cli::Language::english);
    ProgramOptions o;
    addOptions(commandLine, o);
    commandLine.app.parse(
        "--boards 5 --boards 010 --unaddressed --still --pace --turnaround 1.5 --seed 7 --lose 0.1 --corrupt"
        " 0.2 --delay 20:0.3 --duplicate 0.4 --noise 0.5 --refuse 0.6 --mute 2:0.5 --mute 3:1 --hang-up 2.5"
        " --tcp 0 --listen 127.0.0.2 --log");
    const LineOptions& l = o.line;
    EXPECT_EQ(std::tuple(l.boards, l.addressed, l.still, l.pace, l.seed), std::tuple(10, 0, 1, 1, 7));
    EXPECT_EQ(std::tuple(l.lose, l.corrupt, l.late, l.duplicate, l.noise, l.refuse),
              std::tuple(0.1, 0.2, 0.3, 0.4, 0.5, 0.6));
    EXPECT_EQ(std::tuple(l.turnaround, l.delay, o.hangUp), std::tuple(1500us, 20ms, 2500ms));
    EXPECT_EQ(std::tuple(o.tcpPort, o.listenAddress, o.log), std::tuple(0, "127.0.0.2", true));
    ASSERT_EQ(o.mutes.size(), 2U);
    EXPECT_EQ(std::tuple(o.mutes[0].board, o.mutes[0].after, o.mutes[1].board), std::tuple(2, 500ms, 3));
}
