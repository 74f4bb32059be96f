#include "Wendril/runtime/descriptor.hpp"
#include "Wendril/runtime/wakeup.hpp"
#include "Wendril/transport.hpp"

#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <mutex>
#include <stop_token>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace Wendril {

namespace {

// An opening in progress. Raising `cancelled` ends it.
struct Opening {
    explicit Opening(Duration limit)
        : deadline(timeAfter(std::chrono::steady_clock::now(), limit)) {}

    Wakeup cancelled;
    const TimePoint deadline;
};

class ResolverCategory final : public std::error_category {
public:
    const char* name() const noexcept override { return "resolver"; }
    std::string message(int code) const override { return ::gai_strerror(code); }
};

const std::error_category& resolverCategory() {
    static const ResolverCategory category;
    return category;
}

std::system_error systemError(int error) { return std::system_error(error, std::generic_category()); }

struct Address {
    sockaddr_storage bytes{};
    socklen_t size = 0;
};

struct Lookup {
    std::error_code error;
    std::vector<Address> addresses;
};

Lookup lookUp(const std::string& host, std::uint16_t port, int flags) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags;
    addrinfo* list = nullptr;
    Lookup lookup;
    const int error = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &list);
    if (error == EAI_SYSTEM)
        lookup.error = {errno, std::generic_category()};
    else if (error != 0)
        lookup.error = {error, resolverCategory()};
    for (const addrinfo* entry = list; entry; entry = entry->ai_next) {
        Address address;
        address.size = std::min(entry->ai_addrlen, static_cast<socklen_t>(sizeof address.bytes));
        std::copy_n(reinterpret_cast<const char*>(entry->ai_addr), address.size,
                    reinterpret_cast<char*>(&address.bytes));
        lookup.addresses.push_back(address);
    }
    if (list) ::freeaddrinfo(list);
    return lookup;
}

// Waits until `descriptor` has `events`, the opening is cancelled or its time is up.
void await(const Opening& opening, int descriptor, short events, const std::string& target) {
    for (;;) {
        const Duration left = opening.deadline - std::chrono::steady_clock::now();
        if (left <= Duration::zero()) throw TransportError::open(target, ETIMEDOUT);
        constexpr Duration longestPoll = std::chrono::hours(1);
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(std::min(left, longestPoll));
        std::array<pollfd, 2> entries{{{opening.cancelled.descriptor(), POLLIN, 0}, {descriptor, events, 0}}};
        if (::poll(entries.data(), entries.size(), static_cast<int>(wait.count())) < 0) continue;
        if (entries[0].revents != 0) throw TransportError::notOpen();
        if (entries[1].revents != 0) return;
    }
}

// The system's resolver cannot be interrupted and may block for longer than the opening may last, so
// it runs on a thread of its own. That thread may outlive the transport: this record is all they share.
struct Resolution {
    Wakeup done;
    std::atomic<bool> complete = false;
    Lookup lookup;
};

std::vector<Address> resolve(const std::string& host, std::uint16_t port, const Opening& opening,
                             const std::string& target) {
    if (Lookup numeric = lookUp(host, port, AI_NUMERICHOST); !numeric.error)
        return std::move(numeric.addresses);
    const auto resolution = std::make_shared<Resolution>();
    std::thread([resolution, host, port] {
        resolution->lookup = lookUp(host, port, 0);
        resolution->complete.store(true, std::memory_order_release);
        resolution->done.raise();
    }).detach();
    await(opening, resolution->done.descriptor(), POLLIN, target);
    while (!resolution->complete.load(std::memory_order_acquire))
        std::this_thread::yield();
    if (resolution->lookup.error) throw std::system_error(resolution->lookup.error);
    return std::move(resolution->lookup.addresses);
}

std::shared_ptr<Descriptor> connectTo(const Address& address, const Opening& opening,
                                      const std::string& target) {
    auto socket = std::make_shared<Descriptor>(
        ::socket(address.bytes.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_TCP));
    if (socket->number < 0) throw systemError(errno);
    const int noDelay = 1;
    ::setsockopt(socket->number, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
    if (::connect(socket->number, reinterpret_cast<const sockaddr*>(&address.bytes), address.size) == 0)
        return socket;
    if (errno != EINPROGRESS && errno != EINTR) throw systemError(errno);
    await(opening, socket->number, POLLOUT, target);
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(socket->number, SOL_SOCKET, SO_ERROR, &error, &size) != 0) error = errno;
    if (error != 0) throw systemError(error);
    return socket;
}

// A host may have several addresses (localhost: ::1 and 127.0.0.1). The first that accepts is used.
std::shared_ptr<Descriptor> connectToAny(const std::vector<Address>& addresses, const Opening& opening,
                                         const std::string& target) {
    std::system_error refusal = systemError(EADDRNOTAVAIL);
    for (const Address& address : addresses) {
        try {
            return connectTo(address, opening, target);
        } catch (const std::system_error& error) {
            refusal = error;
        }
    }
    throw std::system_error(refusal);
}

}  // namespace

// The connection. The transport owns it; the watch on its socket refers to it weakly.
class TCPTransport::Link : public std::enable_shared_from_this<Link> {
public:
    std::shared_ptr<const Opening> beginOpening(Duration limit) {
        const std::scoped_lock lock(mutex);
        opening = std::make_shared<const Opening>(limit);
        return opening;
    }

    // False when the opening was cancelled meanwhile.
    bool start(const std::shared_ptr<const Opening>& own, std::shared_ptr<const Descriptor> connected,
               const std::shared_ptr<SerialQueue>& queue, OnData onData, OnClose closed) {
        const std::scoped_lock lock(mutex);
        if (opening != own) return false;
        opening.reset();
        socket = std::move(connected);
        onClose = std::move(closed);
        outgoing.clear();
        auto ready = [socket = socket, weakLink = weak_from_this(), weakQueue = std::weak_ptr(queue),
                      onData = std::move(onData)](short events) {
            const auto link = weakLink.lock();
            const auto queue = weakQueue.lock();
            if (!link || !queue) return;
            if (events & POLLOUT) link->flush(*queue);
            if (events & (POLLIN | POLLERR | POLLHUP)) link->receive(socket, *queue, onData);
        };
        watch = queue->watch(socket->number, POLLIN, std::move(ready));
        return true;
    }

    void send(ByteView data, SerialQueue& queue) {
        const std::scoped_lock lock(mutex);
        if (!socket) throw TransportError::notOpen();
        const bool waiting = !outgoing.empty();
        append(outgoing, data);
        if (waiting) return;
        sendOutgoing();
        if (!outgoing.empty()) queue.setEvents(watch, POLLIN | POLLOUT);
    }

    // Cancels an opening, or ends the connection and returns the handler to call.
    OnClose stop(SerialQueue& queue) {
        const std::scoped_lock lock(mutex);
        if (opening) std::exchange(opening, nullptr)->cancelled.raise();
        if (!socket) return nullptr;
        queue.unwatch(watch);
        socket.reset();
        return std::exchange(onClose, nullptr);
    }

private:
    void receive(const std::shared_ptr<const Descriptor>& from, SerialQueue& queue, const OnData& onData) {
        if (!isCurrent(from)) return;
        std::array<std::uint8_t, 4096> bytes;
        const ssize_t count = ::recv(from->number, bytes.data(), bytes.size(), MSG_DONTWAIT);
        if (count > 0) return onData(ByteView(bytes).first(static_cast<std::size_t>(count)));
        const int error = count == 0 ? 0 : errno;
        if (error == EAGAIN || error == EINTR || !isCurrent(from)) return;
        if (const OnClose closed = stop(queue))
            closed(error == 0 ? nullptr : std::make_exception_ptr(systemError(error)));
    }

    bool isCurrent(const std::shared_ptr<const Descriptor>& connection) {
        const std::scoped_lock lock(mutex);
        return socket == connection;
    }

    void flush(SerialQueue& queue) {
        const std::scoped_lock lock(mutex);
        if (!socket) return;
        sendOutgoing();
        if (outgoing.empty()) queue.setEvents(watch, POLLIN);
    }

    // A failed send shows as the end of the connection, which the receiving side reports.
    void sendOutgoing() {
        const ssize_t count =
            ::send(socket->number, outgoing.data(), outgoing.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0)
            outgoing.erase(outgoing.begin(), outgoing.begin() + count);
        else if (count < 0 && errno != EAGAIN && errno != EINTR)
            outgoing.clear();
    }

    std::mutex mutex;
    std::shared_ptr<const Opening> opening;
    std::shared_ptr<const Descriptor> socket;  // null while not connected
    SerialQueue::WatchId watch = 0;
    OnClose onClose;
    Bytes outgoing;
};

TCPTransport::TCPTransport(std::string host, std::uint16_t port, Duration openLimit)
    : host(std::move(host))
    , port(port)
    , openLimit(openLimit)
    , serialQueue(std::make_shared<SerialQueue>("dsp.tcp"))
    , link(std::make_shared<Link>()) {}

TCPTransport::~TCPTransport() { close(); }

std::string TCPTransport::name() const { return host + ":" + std::to_string(port); }

void TCPTransport::open(OnData onData, OnClose onClose) {
    cancellableOpen(std::move(onData), std::move(onClose), {});
}

void TCPTransport::cancellableOpen(OnData onData, OnClose onClose, std::stop_token stop) {
    close();
    const auto opening = link->beginOpening(openLimit);
    const std::stop_callback cancel(std::move(stop), [&opening] { opening->cancelled.raise(); });
    const auto addresses = resolve(host, port, *opening, name());
    auto socket = connectToAny(addresses, *opening, name());
    if (!link->start(opening, std::move(socket), serialQueue, std::move(onData), std::move(onClose)))
        throw TransportError::notOpen();
}

void TCPTransport::write(ByteView data) { link->send(data, *serialQueue); }

void TCPTransport::close() {
    if (OnClose closed = link->stop(*serialQueue))
        serialQueue->post([closed = std::move(closed)] { closed(nullptr); });
}

std::shared_ptr<Executor> TCPTransport::queue() const { return serialQueue; }

}  // namespace Wendril
