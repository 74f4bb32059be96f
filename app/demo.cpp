#include "app/demo.hpp"

#include <chrono>

namespace Corvane {

Demo::Demo(std::size_t speakers)
    : queue(std::make_shared<Wendril::SerialQueue>("demo")) {
    Simulator::LineOptions options;
    options.boards = speakers;
    options.pace = true;
    options.turnaround = std::chrono::milliseconds(1);
    end = std::make_unique<Simulator::PtyEnd>(queue, std::make_shared<Simulator::Line>(queue, options),
                                              folder.filePath(QStringLiteral("demo")).toStdString());
}

}  // namespace Corvane
