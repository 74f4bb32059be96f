#pragma once

#include <cstdio>
#include <string>
#include <utility>

#include <unistd.h>

namespace Cli {

/// A line on standard error that overwrites itself and is erased at the end. Nothing is printed unless
/// that is a terminal.
class ProgressLine {
public:
    explicit ProgressLine(std::string what)
        : what(std::move(what)) {}
    ~ProgressLine() {
        if (shown) std::fprintf(stderr, "\r\033[K");
    }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(double fraction) {
        if (::isatty(STDERR_FILENO) == 0) return;
        shown = true;
        std::fprintf(stderr, "\r%s… %3d%%", what.c_str(), static_cast<int>(fraction * 100));
    }

private:
    const std::string what;
    bool shown = false;
};

}  // namespace Cli
