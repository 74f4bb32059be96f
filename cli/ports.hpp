#pragma once

#include <string>
#include <vector>

namespace Cli {

/// A serial port and what the system knows of its adapter; unknown texts are empty.
struct Port {
    std::string path;
    std::string product;
    std::string vendor;
    std::string serial;
    std::string driver;
    std::string group;  // whose members may open it
    bool mayOpen = false;
};

/// The ports in `dev`, described from `sys` (/sys/class/tty). With `all`, also the computer's own ports
/// that have hardware behind them (ttyS, ttyAMA), last.
std::vector<Port> portsIn(const std::string& dev, const std::string& sys, bool all);

}  // namespace Cli
