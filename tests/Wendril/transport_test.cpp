#include "Wendril/transport.hpp"

#include "Wendril/client.hpp"
#include "simulator/ptyend.hpp"
#include "simulator/tcpend.hpp"
#include "tests/chain.hpp"
#include "tests/listener.hpp"

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <memory>
#include <optional>
#include <thread>

namespace Wendril {
namespace {

using namespace Tests;

// A chain of three speakers in real time, behind a pseudo-terminal or a TCP port.
struct RealChain {
    std::shared_ptr<SerialQueue> queue = std::make_shared<SerialQueue>("line");
    std::shared_ptr<Simulator::Line> line;
    std::optional<Simulator::PtyEnd> pty;
    std::optional<Simulator::TCPEnd> tcp;

    explicit RealChain(Simulator::LineOptions options = {}) {
        options.hostJitter = 0.5;
        line = std::make_shared<Simulator::Line>(queue, options);
    }

    std::shared_ptr<Transport> serial() {
        pty.emplace(queue, line);
        return std::make_shared<SerialTransport>(pty->path(), K7Q::baudRate);
    }

    std::shared_ptr<Transport> bridge() {
        tcp.emplace(queue, line, 0);
        return std::make_shared<TCPTransport>("127.0.0.1", tcp->port());
    }

    std::shared_ptr<Transport> make(bool overTcp) { return overTcp ? bridge() : serial(); }

    void hangUp() {
        pty.reset();
        tcp.reset();
    }

    Simulator::Line::Summary summary() {
        std::promise<Simulator::Line::Summary> summary;
        queue->post([&] { summary.set_value(line->summary()); });
        return summary.get_future().get();
    }
};

struct RealLink {
    explicit RealLink(std::shared_ptr<Transport> transport)
        : bus(std::make_shared<Bus>(std::move(transport)))
        , client(bus, K7Q::productID) {
        run(bus->onClose([this](const std::exception_ptr& error) {
            closed.set_value(error ? describe(error) : "clean");
        }));
        run(bus->open());
    }
    ~RealLink() { run(bus->close()); }
    RealLink(const RealLink&) = delete;
    RealLink& operator=(const RealLink&) = delete;

    template <class T>
    T run(Task<T> task) {
        return spawn(bus->executor, std::move(task)).get();
    }

    std::promise<std::string> closed;
    std::shared_ptr<Bus> bus;
    K7QClient client;
};

struct TransportTest : testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(Links, TransportTest, testing::Bool(),
                         [](const auto& info) { return info.param ? "Tcp" : "Serial"; });

TEST_P(TransportTest, ASpeakerIsReadWrittenAndReadAgainAfterReopening) {
    RealChain chain;
    const auto transport = chain.make(GetParam());
    for (int opening = 0; opening < 2; ++opening) {
        RealLink link(transport);
        EXPECT_EQ(link.run(link.client.readAll(2, nullptr)).size(), 92U);
        const ModuleValue value{DelayValue{static_cast<float>(1.5 * opening), false}};
        link.run(link.client.write(2, K7Q::module(89).value(), value));
        EXPECT_EQ(link.run(link.client.read(2, K7Q::module(89).value())), value);
    }
    EXPECT_TRUE(chain.summary().faults.empty());
}

TEST_P(TransportTest, TheEndOfTheFarSideIsReportedAndEndsAWaitingRequest) {
    RealChain chain({.boards = 1, .lose = 1});
    RealLink link(chain.make(GetParam()));
    const std::string name = link.bus->transport->name();
    auto waiting = spawn(link.bus->executor, link.client.presetInfo(1));
    while (chain.summary().requests.empty())
        std::this_thread::yield();
    chain.hangUp();
    const std::string report = link.closed.get_future().get();
    EXPECT_EQ(failureOf([&] { waiting.get(); }), "Conexão fechada");
    EXPECT_EQ(report,
              GetParam() ? "clean" : "Não foi possível abrir /dev/pts/" + name + ": Input/output error");
    EXPECT_EQ(failureOf([&] { link.run(link.client.info(1)); }), "Conexão fechada");
    EXPECT_EQ(failureOf([&] { link.bus->transport->write(Bytes(4)); }), "Conexão fechada");
}

// Dropped at every moment: while opening, writing, waiting, closing. Nothing may hang, leak or
// touch what is gone.
TEST_P(TransportTest, ALinkMayBeDroppedAtAnyMoment) {
    RealChain chain;
    const auto makeTransport = [&] { return chain.make(GetParam()); };
    for (int moment = 0; moment < 60; ++moment) {
        auto bus = std::make_shared<Bus>(makeTransport());
        const K7QClient client(bus, K7Q::productID);
        auto opening = spawn(bus->executor, bus->open());
        auto reading = spawn(bus->executor, client.readAll(1, nullptr));
        auto pinging = spawn(bus->executor, client.ping(200, 5s));
        if (moment % 3 == 1) spawn(bus->executor, bus->close());
        for (int spin = 0; spin < moment * 400; ++spin)
            std::atomic_signal_fence(std::memory_order_seq_cst);
        const auto executor = bus->executor;
        if (moment % 2)
            spawn(executor, bus->close());
        else
            client.bus->transport->close();
        failureOf([&] { opening.get(); });
        spawn(executor, bus->close()).get();
        failureOf([&] { reading.get(); });
        EXPECT_FALSE(pinging.get());
    }
}

TEST(SerialTransportTest, OnlyPortsOfAdaptersAreOffered) {
    const auto directory = std::filesystem::temp_directory_path() / ("ports-" + std::to_string(::getpid()));
    std::filesystem::create_directory(directory);
    for (const char* name :
         {"cu.usbserial-2", "cu.Bluetooth-Incoming-Port", "tty.usbserial-2", "cu.debug-console",
          "cu.usbserial-10", "cu.BLTH", "ttyS0", "ttyUSB1", "ttyACM0", "xttyUSB0"})
        std::ofstream(directory / name) << "";
    const std::string prefix = directory.string() + "/";
    EXPECT_EQ(SerialTransport::availablePorts(directory.string()),
              (std::vector<std::string>{prefix + "cu.usbserial-10", prefix + "cu.usbserial-2",
                                        prefix + "ttyACM0", prefix + "ttyUSB1"}));
    std::filesystem::remove_all(directory);
    EXPECT_TRUE(SerialTransport::availablePorts(directory.string()).empty());
}

TEST(SerialTransportTest, FailuresToOpenSayWhyAndLeaveItClosed) {
    SerialTransport missing("/dev/no-such-port", 115200);
    EXPECT_EQ(missing.name(), "no-such-port");
    EXPECT_EQ(failureOf([&] { missing.open([](ByteView) {}, [](const std::exception_ptr&) {}); }),
              "Não foi possível abrir /dev/no-such-port: No such file or directory");
    SerialTransport noTerminal("/dev/null", 115200);
    EXPECT_EQ(failureOf([&] { noTerminal.open([](ByteView) {}, [](const std::exception_ptr&) {}); }),
              "Não foi possível configurar /dev/null: Inappropriate ioctl for device");
    EXPECT_EQ(failureOf([&] { noTerminal.write({}); }), "Conexão fechada");
}

// Nobody reads the far side, so the write fills every buffer and waits; closing ends it.
TEST(SerialTransportTest, AWriteThatWaitsForRoomEndsWithTheLine) {
    RealChain chain;
    const auto transport = chain.serial();
    transport->open([](ByteView) {}, [](const std::exception_ptr&) {});
    std::promise<void> release;
    chain.queue->post([blocked = release.get_future().share()] { blocked.wait(); });
    auto writing =
        std::async(std::launch::async, [&] { return failureOf([&] { transport->write(Bytes(1 << 20)); }); });
    transport->close();
    EXPECT_EQ(writing.get(), "Conexão fechada");
    release.set_value();
}

TEST(TCPTransportTest, ARefusedConnectionFailsAtOnceWithTheSystemsText) {
    TCPTransport transport("127.0.0.1", 1);
    EXPECT_EQ(transport.name(), "127.0.0.1:1");
    EXPECT_THROW(transport.open([](ByteView) {}, [](const std::exception_ptr&) {}), std::system_error);
    TCPTransport byName("localhost", 1);
    EXPECT_EQ(failureOf([&] { byName.open([](ByteView) {}, [](const std::exception_ptr&) {}); }),
              "Connection refused");
    TCPTransport unknown("no-such-host.invalid", 1);
    EXPECT_THROW(unknown.open([](ByteView) {}, [](const std::exception_ptr&) {}), std::system_error);
}

TEST(TCPTransportTest, ABridgeThatDoesNotAnswerIsGivenUp) {
    const DeafListener deaf;
    TCPTransport transport("127.0.0.1", deaf.port(), 100ms);
    EXPECT_EQ(failureOf([&] { transport.open([](ByteView) {}, [](const std::exception_ptr&) {}); }),
              "Não foi possível abrir 127.0.0.1:" + std::to_string(deaf.port()) + ": Connection timed out");
}

// More than any socket buffer holds, to a bridge that begins to read only then.
TEST(TCPTransportTest, WhatTheConnectionDoesNotTakeAtOnceFollowsInOrder) {
    const Listener listener(1);
    TCPTransport transport("127.0.0.1", listener.port());
    transport.open([](ByteView) {}, [](const std::exception_ptr&) {});
    Bytes sent(16U << 20);
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = static_cast<std::uint8_t>(i * 31 >> 3);
    const std::size_t half = sent.size() / 2;
    transport.write(ByteView(sent).first(half));
    transport.write(ByteView(sent).subspan(half));
    const Descriptor bridge(::accept4(listener.socket.number, nullptr, nullptr, SOCK_CLOEXEC));
    Bytes received(sent.size());
    EXPECT_EQ(::recv(bridge.number, received.data(), received.size(), MSG_WAITALL),
              static_cast<ssize_t>(received.size()));
    EXPECT_TRUE(received == sent);
}

TEST(TCPTransportTest, ClosingTheBusEndsAConnectThatHangs) {
    const DeafListener deaf;
    const auto before = std::chrono::steady_clock::now();
    for (const bool drop : {false, true}) {
        auto bus = std::make_shared<Bus>(std::make_shared<TCPTransport>("127.0.0.1", deaf.port()));
        const auto caller = std::make_shared<SerialQueue>("caller");
        auto opening = spawn(caller, bus->open());
        std::promise<void> begun;
        bus->executor->postAfter(0ms, [&] { begun.set_value(); });
        if (drop)
            bus.reset();
        else
            spawn(caller, bus->close()).get();
        EXPECT_EQ(failureOf([&] { opening.get(); }), "Conexão fechada");
        if (bus) begun.get_future().wait();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - before, TCPTransport::connectLimit);
}

}  // namespace
}  // namespace Wendril
