#pragma once

#include "Wendril/runtime/descriptor.hpp"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>

namespace Tests {

inline int newSocket(int flags) { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0); }

/// A listening TCP port on loopback. It never accepts a connection.
struct Listener {
    explicit Listener(int backlog) {
        EXPECT_EQ(::bind(socket.number, address(), sizeof where), 0);
        EXPECT_EQ(::listen(socket.number, backlog), 0);
        socklen_t size = sizeof where;
        ::getsockname(socket.number, reinterpret_cast<sockaddr*>(&where), &size);
    }

    const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&where); }
    std::uint16_t port() const { return ntohs(where.sin_port); }

    sockaddr_in where{
        .sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
    Wendril::Descriptor socket{newSocket(0)};
};

/// Whether the process's own far end of `connection` sends small packets at once.
inline bool sendsWithoutDelay(int connection) {
    sockaddr_in far{};
    socklen_t size = sizeof far;
    ::getpeername(connection, reinterpret_cast<sockaddr*>(&far), &size);
    for (int number = 3; number < 1024; ++number) {
        sockaddr_in own{};
        int noDelay = 0;
        socklen_t optionSize = sizeof noDelay;
        if (::getsockname(number, reinterpret_cast<sockaddr*>(&own), &(size = sizeof own)) == 0 &&
            own.sin_port == far.sin_port &&
            ::getsockopt(number, IPPROTO_TCP, TCP_NODELAY, &noDelay, &optionSize) == 0)
            return noDelay != 0;
    }
    return false;
}

/// A listener whose queue is full: a connection to it hangs.
struct DeafListener : Listener {
    DeafListener()
        : Listener(0) {
        for (const auto& filler : fillers)
            static_cast<void>(::connect(filler.number, address(), sizeof where));
    }

    std::array<Wendril::Descriptor, 3> fillers{Wendril::Descriptor(newSocket(SOCK_NONBLOCK)),
                                               Wendril::Descriptor(newSocket(SOCK_NONBLOCK)),
                                               Wendril::Descriptor(newSocket(SOCK_NONBLOCK))};
};

}  // namespace Tests
