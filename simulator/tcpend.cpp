#include "simulator/tcpend.hpp"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace Simulator {

using Wendril::ByteView;
using Wendril::Descriptor;

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::shared_ptr<const Descriptor> listenOn(const std::string& address, std::uint16_t port) {
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_port = htons(port);
    if (::inet_pton(AF_INET, address.c_str(), &where.sin_addr) != 1) {
        errno = EINVAL;
        fail(address);
    }
    auto socket =
        std::make_shared<const Descriptor>(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const int on = 1;
    if (socket->number < 0 || ::setsockopt(socket->number, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        ::bind(socket->number, reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 ||
        ::listen(socket->number, 4) != 0)
        fail(address + ":" + std::to_string(port));
    return socket;
}

std::uint16_t portOf(int socket) {
    sockaddr_in where{};
    socklen_t size = sizeof where;
    if (::getsockname(socket, reinterpret_cast<sockaddr*>(&where), &size) != 0) fail("getsockname");
    return ntohs(where.sin_port);
}

}  // namespace

// The connection of the current host. Used on the queue only.
struct TCPEnd::Connection : std::enable_shared_from_this<Connection> {
    Connection(std::weak_ptr<Wendril::SerialQueue> queue, std::shared_ptr<Line> line)
        : queue(std::move(queue))
        , line(std::move(line)) {}

    void begin(int number) {
        end();
        host = std::make_shared<const Descriptor>(number);
        const int noDelay = 1;
        ::setsockopt(number, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
        line->connect([host = host](ByteView bytes) {
            [[maybe_unused]] const ssize_t sent =
                ::send(host->number, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        });
        watch = queue.lock()->watch(number, POLLIN, [from = host, weak = weak_from_this()](short) {
            if (const auto connection = weak.lock()) connection->receive(from);
        });
    }

    // An event of the previous host may still be queued when a new host has replaced it. It must
    // not end the new connection.
    void receive(const std::shared_ptr<const Descriptor>& from) {
        if (from != host) return;
        std::array<std::uint8_t, 4096> bytes;
        const ssize_t count = ::recv(from->number, bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count > 0)
            line->receive(ByteView(bytes).first(static_cast<std::size_t>(count)));
        else if (count == 0 || (errno != EAGAIN && errno != EINTR))
            end();
    }

    void end() {
        if (!host) return;
        if (const auto owner = queue.lock()) owner->unwatch(watch);
        host.reset();
        line->disconnect();
    }

    const std::weak_ptr<Wendril::SerialQueue> queue;
    const std::shared_ptr<Line> line;
    std::shared_ptr<const Descriptor> host;  // null while none is connected
    Wendril::SerialQueue::WatchId watch = 0;
};

TCPEnd::TCPEnd(std::shared_ptr<Wendril::SerialQueue> serialQueue, std::shared_ptr<Line> line,
               std::uint16_t port, const std::string& address)
    : queue(std::move(serialQueue))
    , connection(std::make_shared<Connection>(queue, std::move(line))) {
    const auto listener = listenOn(address, port);
    ownPort = portOf(listener->number);
    watch = queue->watch(listener->number, POLLIN, [listener, connection = connection](short) {
        const int host = ::accept4(listener->number, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (host >= 0) connection->begin(host);
    });
}

TCPEnd::~TCPEnd() { hangUp(); }

void TCPEnd::hangUp() {
    queue->unwatch(watch);
    queue->post([connection = connection] { connection->end(); });
}

}  // namespace Simulator
