#include "Wendril/serialports.hpp"
#include "Wendril/transport.hpp"

#include "simulator/ptyend.hpp"
#include "simulator/tcpend.hpp"
#include "tests/chain.hpp"
#include "tests/listener.hpp"
#include "tests/simulatorprocess.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <cstdarg>
#include <filesystem>
#include <fstream>
#include <future>
#include <optional>
#include <thread>

namespace {

// The flags of every serial port of this process: no pseudo-terminal has a low-latency mode.
std::atomic<int> serialFlags = 0;

}  // namespace

// Stands in for the C library's function, with a driver that has that mode.
extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept {
    std::va_list rest;
    va_start(rest, request);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    auto* const settings = static_cast<serial_struct*>(argument);
    if (request == TIOCGSERIAL) settings->flags = serialFlags;
    if (request == TIOCSSERIAL) serialFlags = settings->flags;
    if (request == TIOCGSERIAL || request == TIOCSSERIAL) return 0;
    return static_cast<int>(::syscall(SYS_ioctl, descriptor, request, argument));
}

namespace Wendril {
namespace {

using namespace Tests;

const auto ignoreData = [](ByteView) {};
const auto ignoreClose = [](const std::exception_ptr&) {};

// A chain in real time, behind a pseudo-terminal or a TCP port.
struct RealChain {
    explicit RealChain(bool overTcp, Simulator::LineOptions options = {}) {
        options.look = 10ms;
        line = std::make_shared<Simulator::Line>(queue, options);
        if (overTcp)
            transport = std::make_shared<TCPTransport>("127.0.0.1", tcp.emplace(queue, line, 0).port());
        else
            transport = std::make_shared<SerialTransport>(pty.emplace(queue, line).path(), K7Q::baudRate);
        bus = std::make_shared<Bus>(transport);
        client.emplace(bus, K7Q::productID);
    }

    bool hasReceived() {
        std::promise<bool> received;
        queue->post([&] { received.set_value(!line->summary().requests.empty()); });
        return received.get_future().get();
    }

    template <class T>
    T run(Task<T> task) {
        return spawn(bus->executor, std::move(task)).get();
    }

    const std::shared_ptr<SerialQueue> queue = std::make_shared<SerialQueue>("line");
    std::shared_ptr<Simulator::Line> line;
    std::optional<Simulator::PtyEnd> pty;
    std::optional<Simulator::TCPEnd> tcp;
    std::shared_ptr<Transport> transport;
    std::shared_ptr<Bus> bus;
    std::optional<K7QClient> client;
};

struct TransportTest : testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(Links, TransportTest, testing::Bool(),
                         [](const auto& info) { return info.param ? "Tcp" : "Serial"; });

TEST_P(TransportTest, ASpeakerIsReadWrittenAndReadAgainAfterReopening) {
    RealChain chain(GetParam());
    for (int opening = 0; opening < 2; ++opening) {
        chain.run(chain.bus->open());
        EXPECT_EQ(chain.run(chain.client->readAll(2, nullptr)).size(), 92U);
        const ModuleValue value{DelayValue{static_cast<float>(1.5 * opening), false}};
        chain.run(chain.client->write(2, K7Q::module(89).value(), value));
        EXPECT_EQ(chain.run(chain.client->read(2, K7Q::module(89).value())), value);
        chain.run(chain.bus->close());
    }
}

TEST_P(TransportTest, TheEndOfTheFarSideIsReportedAndEndsAWaitingRequest) {
    RealChain chain(GetParam(), {.boards = 1, .lose = 1});
    std::promise<std::string> report;
    chain.run(chain.bus->onClose(
        [&report](const std::exception_ptr& error) { report.set_value(error ? describe(error) : "clean"); }));
    chain.run(chain.bus->open());
    auto waiting = spawn(chain.bus->executor, chain.client->presetInfo(1));
    while (!chain.hasReceived())
        std::this_thread::yield();
    chain.pty.reset();
    chain.tcp.reset();
    const std::string pulled =
        "Não foi possível abrir /dev/pts/" + chain.transport->name() + ": Input/output error";
    EXPECT_EQ(report.get_future().get(), GetParam() ? "clean" : pulled);
    EXPECT_EQ(failureOf([&] { waiting.get(); }), "Conexão fechada");
    EXPECT_EQ(failureOf([&] { chain.transport->write(Bytes(4)); }), "Conexão fechada");
}

// While it opens, writes, waits or closes: nothing may hang, leak or use what has been destroyed.
TEST_P(TransportTest, ALinkMayBeDroppedAtAnyMoment) {
    for (int moment = 0; moment < 60; ++moment) {
        RealChain chain(GetParam());
        const auto executor = chain.bus->executor;
        auto opening = spawn(executor, chain.bus->open());
        auto reading = spawn(executor, chain.client->readAll(1, nullptr));
        auto pinging = spawn(executor, chain.client->ping(200, 5s));
        if (moment % 3 == 1) spawn(executor, chain.bus->close());
        for (int spin = 0; spin < moment * 400; ++spin)
            std::atomic_signal_fence(std::memory_order_seq_cst);
        if (moment % 2)
            spawn(executor, chain.bus->close());
        else
            chain.transport->close();
        failureOf([&] { opening.get(); });
        chain.run(chain.bus->close());
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
    std::string offered;
    for (const std::string& port : SerialTransport::availablePorts(directory.string()))
        offered += std::filesystem::relative(port, directory).string() + " ";
    EXPECT_EQ(offered, "cu.usbserial-10 cu.usbserial-2 ttyACM0 ttyUSB1 ");
    std::filesystem::remove_all(directory);
    EXPECT_TRUE(SerialTransport::availablePorts(directory.string()).empty());
}

TEST(SerialPortsTest, APortHasANameThatOutlastsItsPathAndAHolder) {
    const auto links = std::filesystem::temp_directory_path() / ("by-id-" + std::to_string(::getpid()));
    std::filesystem::create_directory(links);
    std::filesystem::create_symlink("/dev/null", links / "usb-Maker_Product_7-if00-port0");
    EXPECT_EQ(SerialPorts::stableName("/dev/null", links.string()),
              (links / "usb-Maker_Product_7-if00-port0").string());
    EXPECT_EQ(SerialPorts::stableName("/dev/zero", links.string()), "/dev/zero");
    std::filesystem::remove_all(links);

    const Descriptor farSide(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(::grantpt(farSide.number) | ::unlockpt(farSide.number), 0);
    const std::string path = ::ptsname(farSide.number);
    const Descriptor own(::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    EXPECT_FALSE(SerialPorts::holderOf(path)) << "this process is no other";
    Process other({"/bin/sh", "-c", "exec 3<" + path + "; echo open; exec sleep 60"});
    EXPECT_EQ(other.line(), "open");
    const auto holder = SerialPorts::holderOf(path);
    ASSERT_TRUE(holder);
    EXPECT_TRUE(holder->program == "sleep" || holder->program == "sh") << holder->program;
}

TEST(SerialTransportTest, FailuresToOpenSayWhyAndLeaveItClosed) {
    SerialTransport missing("/dev/no-such-port", 115200);
    EXPECT_EQ(missing.name(), "no-such-port");
    EXPECT_EQ(failureOf([&] { missing.open(ignoreData, ignoreClose); }),
              "Não foi possível abrir /dev/no-such-port: No such file or directory");
    SerialTransport noTerminal("/dev/null", 115200);
    EXPECT_EQ(failureOf([&] { noTerminal.open(ignoreData, ignoreClose); }),
              "Não foi possível configurar /dev/null: Inappropriate ioctl for device");
    EXPECT_EQ(failureOf([&] { noTerminal.write({}); }), "Conexão fechada");
}

TEST(SerialTransportTest, APortIsFastWhileOpenAndThenAsItWas) {
    const std::shared_ptr<SerialQueue> queue = std::make_shared<SerialQueue>("line");
    const Simulator::PtyEnd end(queue, std::make_shared<Simulator::Line>(queue, Simulator::LineOptions{}));
    for (const int before : {ASYNC_SPD_HI, ASYNC_SPD_HI | ASYNC_LOW_LATENCY}) {
        serialFlags = before;
        SerialTransport transport(end.path(), K7Q::baudRate);
        transport.open(ignoreData, ignoreClose);
        EXPECT_EQ(serialFlags, ASYNC_SPD_HI | ASYNC_LOW_LATENCY);
        transport.close();
        EXPECT_EQ(serialFlags, before);
    }
}

TEST(SerialTransportTest, ALineIsOpenedRawAt115200EmptyAndForOneProgramOnly) {
    const Descriptor farSide(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(::grantpt(farSide.number) | ::unlockpt(farSide.number), 0);
    const std::string path = ::ptsname(farSide.number);
    const Descriptor terminal(::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios settings{};
    ::tcgetattr(terminal.number, &settings);
    EXPECT_EQ(::write(farSide.number, "old\n", 4), 4);
    pollfd arrival{terminal.number, POLLIN, 0};
    ::poll(&arrival, 1, -1);
    settings.c_iflag |= ISTRIP | IXON | ICRNL;
    settings.c_cflag = (settings.c_cflag | CSTOPB | CRTSCTS) & ~static_cast<tcflag_t>(CLOCAL);
    ::cfsetspeed(&settings, B9600);
    ::tcsetattr(terminal.number, TCSANOW, &settings);

    SerialTransport transport(path, K7Q::baudRate);
    std::promise<std::string> received;
    transport.open([&](ByteView data) { received.set_value({data.begin(), data.end()}); }, ignoreClose);
    ::tcgetattr(terminal.number, &settings);
    EXPECT_EQ(settings.c_iflag & (ISTRIP | IXON | ICRNL), 0U);
    EXPECT_EQ(settings.c_oflag & OPOST, 0U);
    EXPECT_EQ(settings.c_lflag & (ICANON | ECHO | ISIG), 0U);
    EXPECT_EQ(settings.c_cflag & (CSIZE | CSTOPB | PARENB | CREAD | CLOCAL | CRTSCTS), CS8 | CREAD | CLOCAL);
    EXPECT_EQ(::cfgetispeed(&settings), B115200);
    EXPECT_EQ(::cfgetospeed(&settings), B115200);
    int exclusive = 0;
    ::ioctl(terminal.number, TIOCGEXCL, &exclusive);
    EXPECT_EQ(exclusive, 1);
    EXPECT_EQ(::write(farSide.number, "new", 3), 3);
    EXPECT_EQ(received.get_future().get(), "new");
    transport.close();
    ::ioctl(terminal.number, TIOCGEXCL, &exclusive);
    EXPECT_EQ(exclusive, 0);
}

// Nobody reads the far side, so the write fills every buffer and waits.
TEST(SerialTransportTest, AWriteThatWaitsForRoomEndsWithTheLine) {
    const RealChain chain(false);
    chain.transport->open(ignoreData, ignoreClose);
    std::promise<void> release;
    chain.queue->post([blocked = release.get_future().share()] { blocked.wait(); });
    auto writing = std::async(std::launch::async,
                              [&] { return failureOf([&] { chain.transport->write(Bytes(1 << 20)); }); });
    chain.transport->close();
    EXPECT_EQ(writing.get(), "Conexão fechada");
    release.set_value();
}

TEST(TCPTransportTest, ARefusedConnectionFailsAtOnceWithTheSystemsText) {
    for (const std::string host : {"127.0.0.1", "localhost"}) {
        TCPTransport transport(host, 1);
        EXPECT_EQ(transport.name(), host + ":1");
        EXPECT_EQ(failureOf([&] { transport.open(ignoreData, ignoreClose); }), "Connection refused");
    }
    TCPTransport unknown("no-such-host.invalid", 1);
    EXPECT_THROW(unknown.open(ignoreData, ignoreClose), std::system_error);
}

TEST(TCPTransportTest, AConnectThatHangsEndsInTimeOrWhenAskedTo) {
    const DeafListener deaf;
    TCPTransport brief("127.0.0.1", deaf.port(), 100ms);
    EXPECT_EQ(failureOf([&] { brief.open(ignoreData, ignoreClose); }),
              "Não foi possível abrir 127.0.0.1:" + std::to_string(deaf.port()) + ": Connection timed out");
    std::stop_source stopped;
    stopped.request_stop();
    TCPTransport endless("127.0.0.1", deaf.port(), Duration::max());
    EXPECT_EQ(failureOf([&] { endless.cancellableOpen(ignoreData, ignoreClose, stopped.get_token()); }),
              "Conexão fechada");
}

// More than any socket buffer holds, to a bridge that begins to read only then.
TEST(TCPTransportTest, WhatTheConnectionDoesNotTakeAtOnceFollowsInOrderAndWithoutDelay) {
    const Listener listener(1);
    TCPTransport transport("localhost", listener.port());
    transport.open(ignoreData, ignoreClose);
    const Descriptor bridge(::accept4(listener.socket.number, nullptr, nullptr, SOCK_CLOEXEC));
    EXPECT_TRUE(sendsWithoutDelay(bridge.number));
    Bytes sent(16U << 20);
    for (std::size_t i = 0; i < sent.size(); ++i)
        sent[i] = static_cast<std::uint8_t>(i * 31 >> 3);
    transport.write(ByteView(sent).first(sent.size() / 2));
    transport.write(ByteView(sent).subspan(sent.size() / 2));
    Bytes received(sent.size());
    EXPECT_EQ(::recv(bridge.number, received.data(), received.size(), MSG_WAITALL),
              static_cast<ssize_t>(received.size()));
    EXPECT_TRUE(received == sent);
}

}  // namespace
}  // namespace Wendril
