#include "cli/link.hpp"

#include "simulator/line.hpp"
#include "simulator/memorytransport.hpp"

#include "Wendril/runtime/serialqueue.hpp"
#include "Wendril/serialports.hpp"
#include "Wendril/text.hpp"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include <poll.h>

namespace Cli {

using namespace Wendril;

namespace {

std::shared_ptr<Transport> transportTo(const Endpoint& endpoint) {
    if (endpoint.demoSpeakers > 0) {
        Simulator::LineOptions options;
        options.boards = endpoint.demoSpeakers;
        return std::make_shared<Simulator::MemoryTransport>(
            std::make_shared<Simulator::Line>(std::make_shared<SerialQueue>("demo"), options));
    }
    if (!endpoint.port.empty())
        return std::make_shared<SerialTransport>(SerialPorts::pathOf(endpoint.port), K7Q::baudRate);
    return std::make_shared<TCPTransport>(endpoint.bridge.host, endpoint.bridge.port);
}

// What to do about a port that does not open.
std::string adviceOn(int error, const std::string& port) {
    if (error == EACCES) return "seu usuário não tem permissão; corvane-cli ports diz o comando que a dá";
    if (error == EBUSY) {
        const std::string holder = SerialPorts::inUseBy(SerialPorts::pathOf(port));
        return holder.empty() ? "outro programa está usando a porta" : holder;
    }
    return "confira o nome e o cabo (corvane-cli ports)";
}

void printLogLine(const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); }

// A pipe: the signal handler writes to it, and a thread waits for that. A handler may do little else.
const Wakeup& interruption() {
    static const Wakeup wakeup;
    return wakeup;
}

std::atomic<int> lastSignal = 0;  // written by the handler, read by the thread that waits
static_assert(std::atomic<int>::is_always_lock_free);

void onSignal(int signal) {
    lastSignal = signal;
    interruption().raise();
}

}  // namespace

std::string Endpoint::name() const {
    if (demoSpeakers > 0) return "demonstração";
    if (!port.empty()) return port;
    const bool isIPv6 = bridge.host.find(':') != bridge.host.npos;
    return (isIPv6 ? "[" + bridge.host + "]" : bridge.host) + ":" + std::to_string(bridge.port);
}

Link::Link(const Endpoint& endpoint, bool verbose)
    : name(endpoint.name())
    , loss(std::make_shared<Loss>())
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
        open();
    } catch (...) {
        stopWatching();
        throw;
    }
}

Link::~Link() {
    stopWatching();
    spawn(bus->executor, bus->close()).get();
}

void Link::open() {
    try {
        run(bus->open());
    } catch (const TransportError& error) {
        throw Failure(ExitStatus::cannotOpen,
                      std::string(error.what()) + "; " + adviceOn(error.code(), name));
    } catch (const std::system_error& error) {
        throw Failure(ExitStatus::cannotOpen, "Não foi possível conectar à ponte " + name + ": " +
                                                  error.what() + "; confira o endereço e a rede");
    }
}

Failure Link::failureOf(const BusError& error, std::uint8_t address) const {
    const std::string speaker = address == 0 ? "nenhuma caixa" : "a caixa " + twoDigits(address);
    const std::string request = " (função " + std::to_string(error.fun()) + ")";
    Failure failure(ExitStatus::failed, error.what());
    if (error.kind() == BusError::Case::timeout)
        failure = {ExitStatus::noAnswer, speaker + " não respondeu em " + name + request +
                                             "; confira alimentação, cabo e endereço"};
    else if (error.kind() == BusError::Case::rejected)
        failure = {ExitStatus::refused, speaker + " recusou o comando" + request};
    if (address != 0) failure.address = address;
    if (error.kind() != BusError::Case::closed) failure.function = error.fun();
    return failure;
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
        loss->signal = lastSignal;
    }
    bus->abandon();
}

Link::Counts Link::counts(std::uint8_t address) const {
    const LineRecord::Summary summary = bus->record->summary();
    const auto found = summary.addresses.find(address);
    if (found == summary.addresses.end()) return {0, 0, summary.droppedBytes};
    return {found->second.timedOut, found->second.resent, summary.droppedBytes};
}

void Link::throwIfLost() {
    const std::scoped_lock lock(loss->mutex);
    if (loss->signal != 0) throw Interrupted(loss->signal);
    if (!loss->text.empty()) throw Failure(ExitStatus::failed, loss->text);
}

}  // namespace Cli
