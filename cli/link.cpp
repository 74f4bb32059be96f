#include "cli/link.hpp"

#include <array>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include <poll.h>

namespace Cli {

using namespace Wendril;

namespace {

std::shared_ptr<Transport> transportTo(const Endpoint& endpoint) {
    if (!endpoint.port.empty()) return std::make_shared<SerialTransport>(endpoint.port, K7Q::baudRate);
    return std::make_shared<TCPTransport>(endpoint.bridge.host, endpoint.bridge.port);
}

void printLogLine(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

// A pipe: the signal handler writes to it, and a thread waits for that. A handler may do little else.
const Wakeup& interruption() {
    static const Wakeup wakeup;
    return wakeup;
}

void onSignal(int) { interruption().raise(); }

}  // namespace

Link::Link(const Endpoint& endpoint, bool verbose)
    : loss(std::make_shared<Loss>())
    , bus(std::make_shared<Bus>(transportTo(endpoint))) {
    if (verbose) run(bus->setLogger(printLogLine));
    run(bus->onClose([loss = loss](const std::exception_ptr& error) {
        const std::scoped_lock lock(loss->mutex);
        loss->text = error ? describe(error) : "A conexão com as caixas caiu";
    }));
    interruption();
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    watcher = std::thread([this] { closeOnInterruption(); });
    try {
        run(bus->open());
    } catch (...) {
        stopWatching();
        throw;
    }
}

Link::~Link() {
    stopWatching();
    spawn(bus->executor, bus->close()).get();
}

void Link::stopWatching() {
    ended.raise();
    watcher.join();
}

// On a signal every request fails and the port is closed in order. This thread calls `abandon`,
// because a connect that hangs blocks the executor of the bus.
void Link::closeOnInterruption() {
    std::array<pollfd, 2> entries{
        {{interruption().descriptor(), POLLIN, 0}, {ended.descriptor(), POLLIN, 0}}};
    while (::poll(entries.data(), entries.size(), -1) < 0) {
    }
    if (entries[0].revents == 0) return;
    {
        const std::scoped_lock lock(loss->mutex);
        loss->interrupted = true;
    }
    bus->abandon();
}

void Link::throwIfLost() {
    const std::scoped_lock lock(loss->mutex);
    if (loss->interrupted) throw Interrupted();
    if (!loss->text.empty()) throw std::runtime_error(loss->text);
}

}  // namespace Cli
