#pragma once

#include "cli/session.hpp"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace Cli {

/// Runs one command line of corvane-cli, without the program's name, on a session whose options it
/// may set. Throws what the command throws, and std::invalid_argument for a wrong usage.
void runCommand(Session& session, const std::vector<std::string>& arguments);

/// Runs the commands of a file ("-": standard input), one a line, over the session's link. An empty
/// line and one that begins with "#" are skipped; quotes keep blanks. Stops at the first failure unless
/// `keepGoing`; then each failure is printed, and the end has the status of the first.
void runScript(Session& session, const std::string& file, bool keepGoing);

/// Hands over the commands and options of corvane-cli, for its manual page.
void useCommandLine(const std::function<void(const CLI::App&)>& use);

}  // namespace Cli
