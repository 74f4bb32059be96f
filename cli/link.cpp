#include "cli/link.hpp"

#include "cli/numbers.hpp"

#include <array>
#include <csignal>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string_view>
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

// A pipe: the signal handler writes to it, and a thread waits for that. A handler may do little else.
const Wakeup& interruption() {
    static const Wakeup wakeup;
    return wakeup;
}

void onSignal(int) { interruption().raise(); }

struct BridgeText {
    std::string_view host;
    std::optional<std::string_view> port;
};

// "host", "host:port", "[::1]:port"; a bare IPv6 address has colons of its own and no port.
BridgeText splitBridge(std::string_view text) {
    const std::size_t bracket = text.starts_with('[') ? text.find(']') : text.npos;
    if (bracket != text.npos) {
        const std::string_view host = text.substr(1, bracket - 1);
        const std::string_view rest = text.substr(bracket + 1);
        if (rest.empty()) return {host, std::nullopt};
        if (!rest.starts_with(':')) return {};
        return {host, rest.substr(1)};
    }
    const std::size_t colon = text.find(':');
    if (colon == text.npos || text.find(':', colon + 1) != text.npos) return {text, std::nullopt};
    return {text.substr(0, colon), text.substr(colon + 1)};
}

}  // namespace

Endpoint Endpoint::ofBridge(const std::string& text) {
    Endpoint endpoint;
    const auto [host, port] = splitBridge(text);
    endpoint.bridge = host;
    if (endpoint.bridge.empty()) throw std::invalid_argument("falta o endereço da ponte");
    if (!port) return endpoint;
    const auto number = parseNumber<std::uint16_t>(*port, 1, UINT16_MAX);
    if (!number)
        throw std::invalid_argument("a porta da ponte vai de 1 a 65535, não \"" + std::string(*port) + "\"");
    endpoint.bridgePort = *number;
    return endpoint;
}

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
