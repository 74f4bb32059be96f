#include "simulator/options.hpp"

#include "simulator/line.hpp"
#include "simulator/ptyend.hpp"
#include "simulator/showboards.hpp"
#include "simulator/tcpend.hpp"

#include "cli/file.hpp"

#include "Wendril/runtime/serialqueue.hpp"
#include "Wendril/runtime/task.hpp"

#include <csignal>
#include <cstdio>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <sys/prctl.h>
#include <unistd.h>

using namespace Simulator;

namespace {

constexpr int brokenProtocol = 1;
constexpr int cannotServe = 2;

void print(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void printSummary(const Line::Summary& summary) {
    std::string served;
    for (const auto& [what, count] : summary.requests)
        served += (served.empty() ? "" : ", ") + std::to_string(count) + " " + what;
    print("served: " + (served.empty() ? "nothing" : served) +
          "; replies: " + std::to_string(summary.replies));
    print("protocol faults of the host: " + std::to_string(summary.faults.size()));
    for (const std::string& fault : summary.faults)
        print("  " + fault);
}

// Linux fires a thread's timers up to 50 µs late by default. A paced line would be slower than the
// wire by that much in every reply.
void sharpenTimers() { ::prctl(PR_SET_TIMERSLACK, 1UL); }

sigset_t endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

Line::Summary serve(ProgramOptions options, const sigset_t& signals) {
    const auto queue = std::make_shared<Wendril::SerialQueue>("line");
    Cli::Show show;
    if (!options.load.empty()) {
        show = Cli::Show::read(options.load);
        if (show.speakers.empty()) throw std::runtime_error(options.load + " holds no speakers");
        options.line.boards = show.speakers.size();
    }
    const auto line = std::make_shared<Line>(queue, options.line);
    loadShow(*line, show);
    if (options.log) line->setLog(print);
    queue->post(sharpenTimers);
    for (const auto& mute : options.mutes)
        queue->postAfter(mute.after, [line, position = mute.board - 1] { line->mute(position); });
    if (options.hangUp) queue->postAfter(*options.hangUp, [] { ::kill(::getpid(), SIGTERM); });

    std::optional<PtyEnd> pty;
    std::optional<TCPEnd> tcp;
    if (options.tcpPort) {
        tcp.emplace(queue, line, *options.tcpPort, options.listenAddress);
        print("listening on " + options.listenAddress + ":" + std::to_string(tcp->port()));
    } else {
        pty.emplace(queue, line, options.ptyLink);
        print("serial port at " + pty->path());
    }
    int signal = 0;
    ::sigwait(&signals, &signal);
    pty.reset();
    tcp.reset();
    std::promise<Line::Summary> summary;
    std::string dumped;
    queue->post([&, line] {
        if (!options.dump.empty()) dumped = showOf(*line, options.line.boards).text();
        summary.set_value(line->summary());
    });
    Line::Summary result = summary.get_future().get();
    if (!options.dump.empty()) Cli::writeFile(options.dump, dumped);
    return result;
}

}  // namespace

int main(int argc, char** argv) {
    // Threads inherit the signal mask. Blocked before the first thread starts, the signals reach
    // `sigwait` alone.
    const sigset_t signals = endSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    Cli::CommandLine commandLine("corvane-sim", purpose(Cli::Language::english), Cli::Language::english);
    ProgramOptions options;
    addOptions(commandLine, options);
    if (const auto status = commandLine.parse(argc, argv)) return *status;
    try {
        const Line::Summary summary = serve(options, signals);
        printSummary(summary);
        return summary.faults.empty() ? 0 : brokenProtocol;
    } catch (const std::exception& error) {
        commandLine.complain(error.what());
        return cannotServe;
    }
}
