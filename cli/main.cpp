#include "cli/program.hpp"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    Cli::Session session;
    // A mistake in the arguments is told as JSON too.
    session.json = std::ranges::find(arguments, "--json") != arguments.end();
    try {
        Cli::runCommand(session, arguments);
        return 0;
    } catch (const Cli::Interrupted&) {
        return Cli::exitStatusOf(std::current_exception());
    } catch (const std::exception&) {
        const std::string text = Cli::textOf(std::current_exception(), session.json);
        std::fprintf(stderr, session.json ? "%s\n" : "corvane-cli: %s\n", text.c_str());
        return Cli::exitStatusOf(std::current_exception());
    }
}
