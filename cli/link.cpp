#include "cli/link.hpp"

#include <array>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <poll.h>

namespace Cli {

using namespace Wendril;

namespace {

std::shared_ptr<Transport> transportTo(const Endpoint& endpoint) {
    if (!endpoint.port.empty()) return std::make_shared<SerialTransport>(endpoint.port, K7Q::baudRate);
    return std::make_shared<TCPTransport>(endpoint.bridge, endpoint.bridgePort);
}

void printLogLine(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

// A pipe may be written to from a signal handler, and a thread can wait for it.
const Wakeup& interruption() {
    static const Wakeup wakeup;
    return wakeup;
}

void onSignal(int) { interruption().raise(); }

std::string textOf(const std::exception_ptr& error) {
    try {
        if (error) std::rethrow_exception(error);
        return "A conexão com as caixas caiu";
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

}  // namespace

Endpoint Endpoint::ofBridge(const std::string& text) {
    Endpoint endpoint;
    const std::size_t colon = text.rfind(':');
    endpoint.bridge = text.substr(0, colon);
    if (colon != text.npos) {
        const char* const from = text.data() + colon + 1;
        const char* const to = text.data() + text.size();
        const auto [end, error] = std::from_chars(from, to, endpoint.bridgePort);
        if (error != std::errc{} || end != to || endpoint.bridgePort == 0)
            throw std::invalid_argument("a porta da ponte vai de 1 a 65535, não \"" + text.substr(colon + 1) +
                                        "\"");
    }
    if (endpoint.bridge.empty()) throw std::invalid_argument("falta o endereço da ponte");
    return endpoint;
}

Link::Link(const Endpoint& endpoint, bool verbose)
    : loss(std::make_shared<Loss>())
    , bus(std::make_shared<Bus>(transportTo(endpoint))) {
    if (verbose) run(bus->setLogger(printLogLine));
    run(bus->onClose([loss = loss](const std::exception_ptr& error) {
        const std::scoped_lock lock(loss->mutex);
        loss->text = textOf(error);
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

// Ctrl-C closes the bus, which ends whatever waits on it, and the port is given back in order.
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
    spawn(bus->executor, bus->close());
}

void Link::throwIfLost() {
    const std::scoped_lock lock(loss->mutex);
    if (loss->interrupted) throw Interrupted();
    if (!loss->text.empty()) throw std::runtime_error(loss->text);
}

}  // namespace Cli
