// Writes what is installed in /usr/share and made from other files of the tree: manual pages and
// completion scripts of all programs, the user's manual and the icons.

#include "packaging/describe/completions.hpp"
#include "packaging/describe/icons.hpp"
#include "packaging/describe/manpage.hpp"
#include "packaging/describe/manual.hpp"

#include "app/options.hpp"
#include "cli/program.hpp"
#include "simulator/options.hpp"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;
using namespace Describe;

class Output {
public:
    explicit Output(fs::path folder)
        : folder(std::move(folder)) {}

    void page(const CLI::App& app, const ManWords& words, const std::string& place,
              const char* seeAlso) const {
        const Command program = commandOf(app);
        write(place + "/" + program.name + ".1", manPage(program, words, CORVANE_VERSION, seeAlso));
    }

    void completions(const CLI::App& app) const {
        const Command program = commandOf(app);
        write("bash-completion/completions/" + program.name, bashCompletion(program));
        write("zsh/vendor-completions/_" + program.name, zshCompletion(program));
        write("fish/vendor_completions.d/" + program.name + ".fish", fishCompletion(program));
    }

    void write(const std::string& name, const std::string& text) const {
        const fs::path path = folder / name;
        fs::create_directories(path.parent_path());
        std::ofstream file(path, std::ios::binary);
        file << text;
        if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
    }

private:
    const fs::path folder;
};

void describePrograms(const Output& output) {
    constexpr const char* portuguesePages = "man/pt_BR/man1";
    constexpr const char* allPages = "man/man1";
    const auto describe = [&](const CLI::App& app, const char* seeAlso) {
        for (const char* const place : {portuguesePages, allPages})
            output.page(app, portugueseWords, place, seeAlso);
        output.completions(app);
    };
    {
        Cli::CommandLine commandLine("corvane", Corvane::purpose, Cli::Language::portuguese);
        Corvane::Options options;
        Corvane::addOptions(commandLine, options);
        describe(commandLine.app, "corvane\\-cli(1), corvane\\-sim(1)");
    }
    Cli::useCommandLine([&](const CLI::App& app) { describe(app, "corvane(1), corvane\\-sim(1)"); });
    for (const auto language : {Cli::Language::portuguese, Cli::Language::english}) {
        Cli::CommandLine commandLine("corvane-sim", Simulator::purpose(language), language);
        Simulator::ProgramOptions options;
        Simulator::addOptions(commandLine, options);
        const bool english = language == Cli::Language::english;
        if (!english) output.completions(commandLine.app);
        output.page(commandLine.app, english ? englishWords : portugueseWords,
                    english ? allPages : portuguesePages, "corvane(1), corvane\\-cli(1)");
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: corvane-describe SHARE SOURCES\n");
        return 2;
    }
    const QString share = QString::fromLocal8Bit(argv[1]);
    const QString sources = QString::fromLocal8Bit(argv[2]);
    try {
        const Output output(argv[1]);
        describePrograms(output);
        writeIcons(sources + QStringLiteral("/resources"), share);
        const QString manual = manualPage(sources + QStringLiteral("/docs/manual.pt-BR.md"));
        output.write("doc/corvane/manual.pt-BR.html", manual.toStdString());
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "corvane-describe: %s\n", error.what());
        return 1;
    }
}
