#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>

TEST(OptionsTest, AnswersOrSaysWhatIsAllowed) {
    const struct {
        std::vector<std::string> options;
        int status;
        std::string says;
    } cases[] = {
        {{"--version"}, 0, "corvane 0."},      {{"--help"}, 0, "--demo"},
        {{"--demo", "17"}, 2, "1 a 16"},       {{"--demo=0"}, 2, "1 a 16"},
        {{"--demo=muitas"}, 2, "1 a 16"},      {{"--demos"}, 2, "demos"},
        {{"/dev/ttyUSB0"}, 2, "/dev/ttyUSB0"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> command{CORVANE};
        command.insert(command.end(), c.options.begin(), c.options.end());
        Tests::Process process(std::move(command));
        EXPECT_NE(process.rest().find(c.says), std::string::npos) << c.options.front();
        EXPECT_EQ(process.end(), c.status) << c.options.front();
    }
}
