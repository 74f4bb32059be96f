#pragma once

#include <QFileSystemWatcher>
#include <QTimer>

#include <functional>

namespace Corvane {

/// Calls a function shortly after ports have come or gone: adapters that are plugged in or pulled, also
/// while the machine slept.
class PortWatch {
public:
    explicit PortWatch(std::function<void()> changed);

private:
    QFileSystemWatcher watcher;
    QTimer settling;
};

}  // namespace Corvane
