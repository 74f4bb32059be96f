#include "Wendril/runtime/wakeup.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace Wendril {

Wakeup::Wakeup() {
    int ends[2];
    if (::pipe(ends) != 0) throw std::system_error(errno, std::generic_category());
    readEnd = ends[0];
    writeEnd = ends[1];
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
}

Wakeup::~Wakeup() {
    ::close(readEnd);
    ::close(writeEnd);
}

// A full pipe is raised already.
void Wakeup::raise() const {
    while (::write(writeEnd, "", 1) < 0 && errno == EINTR) {
    }
}

// Bytes that one read leaves in the pipe keep it readable, so no call of `raise` is lost.
void Wakeup::clear() const {
    char bytes[64];
    while (::read(readEnd, bytes, sizeof bytes) < 0 && errno == EINTR) {
    }
}

}  // namespace Wendril
