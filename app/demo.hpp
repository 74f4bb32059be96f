#pragma once

#include "simulator/ptyend.hpp"

#include <QTemporaryDir>

#include <cstddef>
#include <memory>
#include <string>

namespace Corvane {

/// A chain of simulated speakers behind a pseudo-terminal of this process, at the speed of a real
/// line.
class Demo {
public:
    static constexpr std::size_t usualSpeakers = 3;
    static constexpr std::size_t mostSpeakers = 16;

    /// Throws std::system_error.
    explicit Demo(std::size_t speakers);

    /// The serial port to open.
    const std::string& port() const { return end->path(); }

private:
    QTemporaryDir folder;  // holds the link "demo" to the port; the port list shows that name
    std::shared_ptr<Wendril::SerialQueue> queue;
    std::unique_ptr<Simulator::PtyEnd> end;
};

}  // namespace Corvane
