#pragma once

#include "Wendril/runtime/descriptor.hpp"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>

namespace Tests {

/// A listener that never accepts and whose queue is full: a connection to it hangs.
struct DeafListener {
    DeafListener() {
        EXPECT_EQ(::bind(socket.number, reinterpret_cast<const sockaddr*>(&where), sizeof where), 0);
        EXPECT_EQ(::listen(socket.number, 0), 0);
        socklen_t size = sizeof where;
        ::getsockname(socket.number, reinterpret_cast<sockaddr*>(&where), &size);
        for (const auto& filler : fillers)
            static_cast<void>(
                ::connect(filler.number, reinterpret_cast<const sockaddr*>(&where), sizeof where));
    }

    static int newSocket(int flags) { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | flags, 0); }

    std::uint16_t port() const { return ntohs(where.sin_port); }

    sockaddr_in where{
        .sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
    Wendril::Descriptor socket{newSocket(0)};
    std::array<Wendril::Descriptor, 3> fillers{Wendril::Descriptor(newSocket(SOCK_NONBLOCK)),
                                               Wendril::Descriptor(newSocket(SOCK_NONBLOCK)),
                                               Wendril::Descriptor(newSocket(SOCK_NONBLOCK))};
};

}  // namespace Tests
