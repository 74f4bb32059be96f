#pragma once

#include "simulator/line.hpp"

#include "Wendril/runtime/descriptor.hpp"
#include "Wendril/runtime/serialqueue.hpp"

#include <cstdint>
#include <memory>
#include <string>

namespace Simulator {

/// A simulated line behind a Wi-Fi bridge: a TCP server that relays bytes for one host at a time.
/// A new host replaces the last. `queue` must be the line's executor. The destructor hangs up.
class TCPEnd {
public:
    /// Listens on a numeric IPv4 `address`; port 0 picks a free one. Throws std::system_error.
    TCPEnd(std::shared_ptr<Wendril::SerialQueue> queue, std::shared_ptr<Line> line, std::uint16_t port,
           const std::string& address = "127.0.0.1");
    ~TCPEnd();
    TCPEnd(const TCPEnd&) = delete;
    TCPEnd& operator=(const TCPEnd&) = delete;

    std::uint16_t port() const { return ownPort; }

    /// Closes the connection and stops listening. From any thread.
    void hangUp();

private:
    struct Connection;

    const std::shared_ptr<Wendril::SerialQueue> queue;
    const std::shared_ptr<Connection> connection;
    std::uint16_t ownPort = 0;
    Wendril::SerialQueue::WatchId watch = 0;
};

}  // namespace Simulator
