#include "simulator/ptyend.hpp"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace Simulator {

using Wendril::ByteView;
using Wendril::Descriptor;

namespace {

[[noreturn]] void fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::string hostDeviceOf(int board) {
    std::array<char, 128> name{};
    if (::grantpt(board) != 0 || ::unlockpt(board) != 0 || ::ptsname_r(board, name.data(), name.size()) != 0)
        fail("pseudo-terminal");
    return name.data();
}

// A new terminal echoes. Until the host makes it raw, the line would receive its own replies.
void makeRaw(int board) {
    termios settings{};
    if (::tcgetattr(board, &settings) != 0) fail("pseudo-terminal");
    ::cfmakeraw(&settings);
    if (::tcsetattr(board, TCSANOW, &settings) != 0) fail("pseudo-terminal");
}

void makeLink(const std::string& device, const std::string& link) {
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(link))) std::filesystem::remove(link);
    std::filesystem::create_symlink(device, link);
}

}  // namespace

PtyEnd::PtyEnd(std::shared_ptr<Wendril::SerialQueue> queue, std::shared_ptr<Line> line, std::string linkPath)
    : queue(std::move(queue))
    , line(std::move(line))
    , link(std::move(linkPath)) {
    const auto board =
        std::make_shared<Descriptor>(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (board->number < 0) fail("pseudo-terminal");
    device = hostDeviceOf(board->number);
    makeRaw(board->number);
    // While no descriptor is open on the host's side, every read on ours fails. Held open, the port
    // survives a host that closes it and opens it again.
    hostSide = std::make_shared<Descriptor>(::open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (hostSide->number < 0) fail(device);
    if (!link.empty()) makeLink(device, link);

    watch = this->queue->watch(board->number, POLLIN, [board, line = this->line](short) {
        std::array<std::uint8_t, 4096> bytes;
        const ssize_t count = ::read(board->number, bytes.data(), bytes.size());
        if (count > 0) line->receive(ByteView(bytes).first(static_cast<std::size_t>(count)));
    });
    // When the host does not read, the terminal's buffer fills. What does not fit is lost, as on a
    // real line.
    this->queue->post([board, line = this->line] {
        line->connect([board](ByteView bytes) {
            [[maybe_unused]] const ssize_t sent = ::write(board->number, bytes.data(), bytes.size());
        });
    });
}

PtyEnd::~PtyEnd() {
    hangUp();
    std::error_code ignored;
    if (!link.empty()) std::filesystem::remove(link, ignored);
}

void PtyEnd::hangUp() {
    queue->post([line = line] { line->disconnect(); });
    queue->unwatch(watch);
}

}  // namespace Simulator
