#include "simulator/soak/run.hpp"

#include "cli/commandline.hpp"

#include <cinttypes>
#include <cstdio>

using namespace Soak;

namespace {

constexpr int violated = 1;

void printCount(const std::string& name, std::uint64_t count) {
    std::printf("  %-28s %12" PRIu64 "\n", name.c_str(), count);
}

void printTable(const Result& result) {
    const Ledger& ledger = result.ledger;
    std::printf("%.2f hours on %" PRIu64 " chains in %.1f s: %.0f times real time; %zu KiB in use\n",
                result.hours, result.chains, result.realSeconds, result.hours * 3600 / result.realSeconds,
                result.memory / 1024);
    std::printf("faults\n");
    for (std::size_t i = 0; i < faultNames.size(); ++i)
        printCount(std::string(faultNames[i]), ledger.faults[i]);
    std::printf("gestures\n");
    for (const auto& [name, count] : ledger.gestures)
        printCount(name, count);
    std::printf("line\n");
    printCount("openings", ledger.openings);
    printCount("requests", ledger.requests);
    printCount("replies", ledger.replies);
    std::printf("edits\n");
    printCount("sent", ledger.writes);
    printCount("confirmed", ledger.confirmed);
    printCount("told as not confirmed", ledger.noticed);
    std::printf("differences after quiet minutes (%" PRIu64 " checks)\n", ledger.checks);
    printCount("told by a notice", ledger.told);
    printCount("ambiguous in the protocol", ledger.ambiguous);
    printCount("unaccounted for", ledger.unaccounted);
}

}  // namespace

int main(int argc, char** argv) {
    Cli::CommandLine commandLine("corvane-soak",
                                 "The model on simulated chains with every fault, in virtual time.",
                                 Cli::Language::english);
    Options options;
    bool isLogged = false;
    constexpr double mostHours = 1e6;
    commandLine.app.add_option("--hours", options.hours, "virtual time (1)")
        ->type_name("H")
        ->transform(commandLine.number(0.0, mostHours));
    commandLine.app.add_option("--seed", options.seed, "what everything is drawn from (1)")
        ->type_name("N")
        ->transform(commandLine.number<std::uint64_t>(0, UINT64_MAX));
    commandLine.app.add_flag("--log", isLogged, "print gestures, faults and events with their time");
    commandLine.app.footer(
        "Exit status: 0; 1 when something that must always hold did not; 2 for wrong usage.");
    if (const auto status = commandLine.parse(argc, argv)) return *status;
    if (isLogged) options.log = [](const std::string& line) { std::printf("%s\n", line.c_str()); };
    const Result result = run(options);
    printTable(result);
    if (!result.violation) return 0;
    std::printf("FAILED: %s\nReplay: corvane-soak --hours %g --seed %" PRIu64 " --log\n",
                result.violation->c_str(), options.hours, options.seed);
    return violated;
}
