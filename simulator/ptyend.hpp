#pragma once

#include "simulator/line.hpp"

#include "Wendril/runtime/descriptor.hpp"
#include "Wendril/runtime/serialqueue.hpp"

#include <memory>
#include <string>

namespace Simulator {

/// A simulated line as a serial port: a pseudo-terminal whose other side the host opens. The line
/// must live on `queue`. Destroying the end hangs up.
class PtyEnd {
public:
    /// With a `link` path, makes it a symbolic link to the port; a symbolic link that is there
    /// already is replaced, anything else is not. Throws std::system_error.
    PtyEnd(std::shared_ptr<Wendril::SerialQueue> queue, std::shared_ptr<Line> line, std::string link = {});
    ~PtyEnd();
    PtyEnd(const PtyEnd&) = delete;
    PtyEnd& operator=(const PtyEnd&) = delete;

    /// What the host opens.
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
