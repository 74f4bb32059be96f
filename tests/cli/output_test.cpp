#include "cli/output.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Cli {
namespace {

TEST(OutputTest, ColumnsAlignAlsoUnderLettersOfTwoBytes) {
    EXPECT_EQ(table({"nº", "nome", "dB"}, {{"7", "São João", "-3"}, {"12", "Festa", "0"}}),
              "nº  nome      dB\n"
              "7   São João  -3\n"
              "12  Festa     0\n");
}

TEST(OutputTest, NumbersReadTheSameInEveryProgram) {
    EXPECT_EQ(fixed(-0.25, 2), "-0.25");
    EXPECT_EQ(fixed(std::numeric_limits<double>::max(), 0).size(), 309U);
    EXPECT_EQ(fixed(std::nan(""), 1), "-");
    EXPECT_EQ(jsonOf(0.1F).dump(), "0.1");
    EXPECT_EQ(jsonOf(std::numeric_limits<float>::infinity()).dump(), "null");
    EXPECT_EQ(jsonOf(Wendril::ModuleValue{Wendril::GainValue{-3.3F, true, false}}).dump(),
              R"({"db":-3.3,"mute":true,"phaseNormal":false})");
}

}  // namespace
}  // namespace Cli
