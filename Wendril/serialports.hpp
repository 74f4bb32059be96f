#pragma once

#include <optional>
#include <string>

/// What the system knows of serial ports, by their paths.
namespace Wendril::SerialPorts {

/// The path that a user's name for a port means: a path is itself, and a name without a directory is
/// that of an entry of /dev or of /dev/serial/by-id. Names of nothing come back as they are.
std::string pathOf(const std::string& name);

/// The name that an adapter keeps when it is plugged in again: that of its link in `links`, which names
/// maker, product and serial number. A port without one is its own name.
std::string stableName(const std::string& path, const std::string& links = "/dev/serial/by-id");

/// Another process that has the port open.
struct Holder {
    int process;
    std::string program;
};

/// Finds only processes that the system lets this user see into.
std::optional<Holder> holderOf(const std::string& path);

/// "em uso por NAME, processo NUMBER"; empty when no holder is found.
std::string inUseBy(const std::string& path);

}  // namespace Wendril::SerialPorts
