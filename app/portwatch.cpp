#include "app/portwatch.hpp"

#include <chrono>
#include <utility>

namespace Corvane {

namespace {

// udev sets the rights and makes the links of a new port some time after the port itself.
constexpr auto settlingTime = std::chrono::milliseconds(500);

}  // namespace

PortWatch::PortWatch(std::function<void()> changed)
    : watcher({QStringLiteral("/dev")}) {
    settling.setSingleShot(true);
    settling.setInterval(settlingTime);
    QObject::connect(&watcher, &QFileSystemWatcher::directoryChanged, &settling,
                     [this] { settling.start(); });
    QObject::connect(&settling, &QTimer::timeout, &settling, std::move(changed));
}

}  // namespace Corvane
