#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>

#include <algorithm>

constexpr struct {
    const char* command;
    int status;
    const char* says;
} cases[] = {
    {CORVANE " --version", 0, "corvane " VERSION "\n"},
    {CORVANE " --help", 0, "Uso: corvane [OPÇÕES]\n"},
    {CORVANE " --help-all", 2, "corvane: argumento desconhecido: --help-all"},
    {CORVANE " --demo 17", 2, "--demo aceita de 1 a 16, não \"17\""},
    {CORVANE " --port x --bridge y", 2, "--port não se combina com --bridge"},
    {CORVANE " --bridge y:0", 2, "a porta da ponte vai de 1 a 65535, não \"0\""},
    {CORVANE " --demo=0", 2, "--demo aceita de 1 a 16, não \"0\""},
    {CORVANE " --zoom 2.5", 2, "--zoom aceita de 1 a 2, não \"2.5\""},
    {CORVANE, 1, "corvane: não há tela"},
    {"DISPLAY=:4242 " CORVANE, 1, "corvane: não há tela para abrir a janela (DISPLAY=:4242)"},
    {"XDG_RUNTIME_DIR=/tmp WAYLAND_DISPLAY=none QT_QPA_PLATFORM=wayland " CORVANE, 1,
     "é preciso o pacote qt6-wayland"},
    {"QT_QPA_PLATFORM=none " CORVANE, 1, "(QT_QPA_PLATFORM=none)"},
    {CLI " --version", 0, "corvane-cli " VERSION "\n"},
    {CLI " --help", 0, "Uso: corvane-cli [OPÇÕES] COMANDO\n"},
    {CLI " preset 1 save --help", 0, "Uso: corvane-cli preset CAIXAS save [OPÇÕES] N NOME\n"},
    {CLI, 2, "corvane-cli: falta o comando"},
    {CLI " info", 2, "falta o argumento CAIXA"},
    {CLI " info 255", 2, "de 1 a 254, não \"255\""},
    {CLI " preset 1 load 32", 2, "N aceita de 0 a 31, não \"32\""},
    {CLI " info 1 --port", 2, "--port precisa de um valor"},
    {CLI " info 1 --port x --bridge y", 2, "--port não se combina com --bridge"},
    {CLI " info 1", 2, "diga onde estão as caixas"},
    {CLI " --json=x ports", 2, "--json não aceita esse valor"},
    {CLI " --port x scan 8-7", 2, "a faixa 8-7 está ao contrário"},
    {CLI " --port x response 1 Out4", 2, "não há canal \"Out4\""},
    {SIMULATOR " --version", 0, "corvane-sim " VERSION "\n"},
    {SIMULATOR " --help", 0, "Usage: corvane-sim [OPTIONS]\n"},
    {SIMULATOR " --sing", 2, "corvane-sim: unknown argument: --sing"},
    {SIMULATOR " --boards 255", 2, "--boards takes 1 to 254, not \"255\""},
    {SIMULATOR " --lose nan", 2, "--lose takes 0 to 1, not \"nan\""},
    {SIMULATOR " --delay 5:2", 2, "--delay takes MS:P"},
    {SIMULATOR " --mute 4:1", 2, "--mute names board 4 in a chain of 3"},
    {SIMULATOR " --tcp 1 --pty x", 2, "--pty cannot be combined with --tcp"},
    {SIMULATOR " --listen 127.0.0.1", 2, "--listen needs --tcp"},
    {SIMULATOR " --hang-up 0", 0, "protocol faults of the host: 0\n"},
};

TEST(UsageTest, EveryProgramAnswersOrSaysWhatIsWrongInItsLanguage) {
    for (const auto& [command, status, says] : cases) {
        // A program that starts instead of ending is ended.
        const auto result = Tests::shell("timeout 20 env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM " +
                                         std::string(command));
        EXPECT_EQ(result.status, status) << command;
        EXPECT_NE(result.output.find(says), std::string::npos) << command << ": " << result.output;
        EXPECT_TRUE(status == 0 || std::ranges::count(result.output, '\n') == 1) << result.output;
        const bool english = std::string(command).starts_with(SIMULATOR);
        for (const char* const word :
             {"Usage", "Options", "Print", "TEXT", "UINT", "Positionals", "REQUIRED"})
            EXPECT_TRUE(english || result.output.find(word) == std::string::npos) << result.output;
    }
}

// In bash, after "corvane-cli preset 1 " come the commands of presets, and the options of all commands.
TEST(CompletionTest, BashOffersWhatMayStandThere) {
    const struct {
        const char* words;
        const char* offers;
        const char* refuses;
    } lines[] = {
        {"''", " preset ", " load "},
        {"preset 1 ''", " load save ", " scan "},
        {"restore --''", " --dry-run ", " --watch "},
        {"--json scan --''", " --port ", " --dry-run "},
        {"check --seconds ''", "", " --port "},
    };
    for (const auto& [words, offers, refuses] : lines) {
        const auto result =
            Tests::shell("env WORDS=\"" + std::string(words) +
                         "\" bash -c '. " COMPLETION "; eval \"COMP_WORDS=(corvane-cli $WORDS)\"; "
                         "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _corvane_cli; "
                         "echo \" ${COMPREPLY[*]} \"'");
        EXPECT_EQ(result.status, 0) << result.output;
        EXPECT_NE(result.output.find(offers), std::string::npos) << words << ": " << result.output;
        EXPECT_EQ(result.output.find(refuses), std::string::npos) << words << ": " << result.output;
    }
}
