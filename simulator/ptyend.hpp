#pragma once

#include "simulator/line.hpp"

#include "Wendril/runtime/descriptor.hpp"
#include "Wendril/runtime/serialqueue.hpp"

#include <memory>
#include <string>

namespace Simulator {

/// A simulated line behind a serial port: a pseudo-terminal whose other side the host opens.
/// `queue` must be the line's executor. The destructor hangs up.
class PtyEnd {
public:
    /// With a `link` path, makes it a symbolic link to the port. An existing symbolic link is
    /// replaced, any other file is not. Throws std::system_error.
    PtyEnd(std::shared_ptr<Wendril::SerialQueue> queue, std::shared_ptr<Line> line, std::string link = {});
    ~PtyEnd();
    PtyEnd(const PtyEnd&) = delete;
    PtyEnd& operator=(const PtyEnd&) = delete;

    /// The path of the port for the host to open.
    const std::string& path() const { return link.empty() ? device : link; }

    /// Pulls the cable: the host's next read fails. From any thread.
    void hangUp();

private:
    const std::shared_ptr<Wendril::SerialQueue> queue;
    const std::shared_ptr<Line> line;
    const std::string link;
    std::string device;
    std::shared_ptr<const Wendril::Descriptor> hostSide;
    Wendril::SerialQueue::WatchId watch = 0;
};

}  // namespace Simulator
