#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Tests::Result;

// A program with its arguments, which hold no spaces.
Result run(const std::string& commandLine) {
    std::istringstream words(commandLine);
    std::vector<std::string> command;
    for (std::string word; words >> word;)
        command.push_back(word);
    return Tests::resultOf(std::move(command));
}

TEST(UsageTest, EveryProgramTellsItsVersion) {
    for (const auto& [program, name] :
         {std::pair{CORVANE, "corvane"}, {CLI, "corvane-cli"}, {SIMULATOR, "corvane-sim"}}) {
        const Result result = run(std::string(program) + " --version");
        EXPECT_EQ(result.output, name + std::string(" " VERSION "\n"));
        EXPECT_EQ(result.status, 0);
    }
}

TEST(UsageTest, HelpIsInOneLanguage) {
    const struct {
        std::string command;
        std::string says;
        std::vector<const char*> foreign;
    } cases[] = {
        {CORVANE " --help", "Uso: corvane [OPÇÕES]", {"Usage", "Options", "Print", "TEXT"}},
        {CORVANE " -h", "--demo [N]", {"Usage"}},
        {CLI " --help",
         "Uso: corvane-cli [OPÇÕES] COMANDO",
         {"Usage", "Options", "Print", "Commands", "TEXT"}},
        {CLI " preset 1 save --help",
         "N NOME",
         {"Usage", "Options", "Positionals", "Print", "UINT", "REQUIRED"}},
        {SIMULATOR " --help", "Usage: corvane-sim [OPTIONS]", {"Uso", "Opções", "TEXT", "FLOAT"}},
    };
    for (const auto& c : cases) {
        const Result result = run(c.command);
        EXPECT_EQ(result.status, 0);
        EXPECT_NE(result.output.find(c.says), std::string::npos) << result.output;
        for (const char* const word : c.foreign)
            EXPECT_EQ(result.output.find(word), std::string::npos) << word << " in " << c.command;
    }
}

TEST(UsageTest, AWrongCommandLineIsRefusedInOneClearLine) {
    const struct {
        std::string command;
        std::string says;
    } cases[] = {
        {CORVANE " --help-all", "corvane: argumento desconhecido: --help-all"},
        {CORVANE " /dev/ttyUSB0", "argumento desconhecido: /dev/ttyUSB0"},
        {CORVANE " --demo 17", "--demo aceita de 1 a 16, não \"17\""},
        {CORVANE " --demo=0", "--demo aceita de 1 a 16, não \"0\""},
        {CORVANE " --demo muitas", "--demo aceita de 1 a 16, não \"muitas\""},
        {CLI, "corvane-cli: falta o comando"},
        {CLI " sing", "argumento desconhecido: sing"},
        {CLI " info", "falta o argumento CAIXA"},
        {CLI " info 255", "CAIXA aceita de 1 a 254, não \"255\""},
        {CLI " preset 1 load 32", "N aceita de 0 a 31, não \"32\""},
        {CLI " info 1 --port", "--port precisa de um valor"},
        {CLI " info 1 --port x --bridge y", "--port não se combina com --bridge"},
        {CLI " info 1", "diga onde estão as caixas"},
        {CLI " --json=x ports", "--json não aceita esse valor"},
        {CLI " --port x scan 8-7", "a faixa 8-7 está ao contrário"},
        {CLI " --port x scan 1-256", "de 1 a 255"},
        {CLI " --port x read 1 VU/In0", "é um medidor"},
        {CLI " --port x write 1 GAIN/In0 db=7", "vai de -60 a 6"},
        {CLI " --port x response 1 Out4", "não há canal \"Out4\""},
        {SIMULATOR " --sing", "corvane-sim: unknown argument: --sing"},
        {SIMULATOR " --boards 0", "--boards takes 1 to 254, not \"0\""},
        {SIMULATOR " --boards 255", "--boards takes 1 to 254, not \"255\""},
        {SIMULATOR " --lose 1.5", "--lose takes 0 to 1, not \"1.5\""},
        {SIMULATOR " --lose nan", "--lose takes 0 to 1, not \"nan\""},
        {SIMULATOR " --delay 5", "--delay takes MS:P"},
        {SIMULATOR " --delay 5:2", "--delay takes MS:P"},
        {SIMULATOR " --mute 0:1", "--mute takes BOARD:SECONDS"},
        {SIMULATOR " --mute 4:1", "--mute names board 4 in a chain of 3"},
        {SIMULATOR " --tcp 1 --pty x", "--pty cannot be combined with --tcp"},
        {SIMULATOR " --listen 127.0.0.1", "--listen needs --tcp"},
        {SIMULATOR " --boards", "--boards needs a value"},
    };
    for (const auto& c : cases) {
        const Result result = run(c.command);
        EXPECT_EQ(result.status, 2) << c.command;
        EXPECT_NE(result.output.find(c.says), std::string::npos) << c.command << ": " << result.output;
        EXPECT_EQ(result.output.find('\n') + 1, result.output.size()) << result.output;
    }
}

TEST(ScreenTest, WithoutAScreenTheWindowEndsWithOneClearLine) {
    for (const std::string screen : {"", "DISPLAY=:4242", "WAYLAND_DISPLAY=none", "QT_QPA_PLATFORM=none"}) {
        const Result result =
            run(std::string("/usr/bin/env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM ") + screen +
                " " CORVANE);
        EXPECT_EQ(result.status, 1) << screen;
        EXPECT_EQ(result.output.find("corvane: não há tela"), 0U) << result.output;
        EXPECT_NE(result.output.find(screen), std::string::npos) << result.output;
        EXPECT_EQ(result.output.find('\n') + 1, result.output.size()) << result.output;
    }
}

}  // namespace
