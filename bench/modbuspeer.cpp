#include "bench/modbuspeer.hpp"

#include <modbus.h>

#include <arpa/inet.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <vector>

namespace ModbusPeer {

namespace {

std::string path;
std::uint16_t port = 0;
std::vector<pid_t> servers;

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(1);
}

template <class Serve>
void startProcess(Serve serve) {
    const pid_t child = ::fork();
    if (child < 0) fail("fork");
    if (child > 0) return servers.push_back(child);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    serve();
    ::_exit(0);
}

// Until the client closes.
void answerRequests(modbus_t* context) {
    modbus_mapping_t* const mapping = modbus_mapping_new(0, 0, registers, 0);
    std::array<std::uint8_t, MODBUS_MAX_ADU_LENGTH> query;
    for (int size = 0; size >= 0; size = modbus_receive(context, query.data()))
        if (size > 0) modbus_reply(context, query.data(), size, mapping);
}

void startSerialServer() {
    const int line = ::posix_openpt(O_RDWR | O_NOCTTY);
    std::array<char, 128> name{};
    if (line < 0 || ::grantpt(line) != 0 || ::unlockpt(line) != 0 ||
        ::ptsname_r(line, name.data(), name.size()) != 0)
        fail("pseudo-terminal");
    path = name.data();
    termios settings{};
    ::tcgetattr(line, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(line, TCSANOW, &settings);
    startProcess([line] {
        modbus_t* const context = modbus_new_rtu("/dev/null", 115200, 'N', 8, 1);
        modbus_set_slave(context, server);
        modbus_set_socket(context, line);
        ::open(path.c_str(), O_RDWR | O_NOCTTY);  // kept open, so that clients may come and go
        answerRequests(context);
    });
}

void startTcpServer() {
    int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in where{};
    where.sin_family = AF_INET;
    where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof where;
    if (::bind(listener, reinterpret_cast<const sockaddr*>(&where), sizeof where) != 0 ||
        ::listen(listener, 1) != 0 ||
        ::getsockname(listener, reinterpret_cast<sockaddr*>(&where), &size) != 0)
        fail("listen");
    port = ntohs(where.sin_port);
    startProcess([listener]() mutable {
        modbus_t* const context = modbus_new_tcp("127.0.0.1", 0);
        while (modbus_tcp_accept(context, &listener) >= 0) {
            answerRequests(context);
            modbus_close(context);
        }
    });
}

}  // namespace

void start() {
    startSerialServer();
    startTcpServer();
}

void stop() {
    for (const pid_t child : servers) {
        ::kill(child, SIGTERM);
        ::waitpid(child, nullptr, 0);
    }
}

const std::string& serialPath() { return path; }

std::uint16_t tcpPort() { return port; }

}  // namespace ModbusPeer
