#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>

namespace {

using Tests::Process;

// Qt complains about other character sets.
constexpr auto utf8 = "LC_ALL=C.UTF-8";

TEST(ExamplesTest, TheExamplesOfTheLibraryFindTheirSpeakers) {
    const Tests::SimulatorProcess simulator({"--boards", "2"});
    Process list({LIST_SPEAKERS, simulator.path()});
    EXPECT_EQ(list.line(), "1 K7Q-112A 24074001: +0.0 dB");
    EXPECT_EQ(list.line(), "2 K7Q-112A 24074002: +0.0 dB");
    EXPECT_EQ(list.end(), 0) << list.rest();
    Process meters({"/usr/bin/env", utf8, QT_METERS, simulator.path()});
    for (int reading = 0; reading < 3; ++reading)
        EXPECT_TRUE(meters.line().ends_with(" dB"));
    EXPECT_EQ(meters.end(), 0) << meters.rest();
    for (const char* program : {LIST_SPEAKERS, QT_METERS}) {
        Process failing({"/usr/bin/env", utf8, program, "/dev/no-such-port"});
        EXPECT_EQ(failing.line(), "Não foi possível abrir /dev/no-such-port: No such file or directory");
        EXPECT_EQ(failing.end(), 1);
    }
}

}  // namespace
