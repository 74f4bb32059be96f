#include "cli/ports.hpp"

#include "cli/commands.hpp"
#include "cli/output.hpp"

#include "Wendril/transport.hpp"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <utility>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Cli {

namespace {

namespace fs = std::filesystem;

std::string firstLine(const fs::path& file) {
    std::string line;
    std::getline(std::ifstream(file) >> std::ws, line);
    return line;
}

// Nobody should join the group of root for a port.
std::string groupOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || status.st_gid == 0) return {};
    constexpr mode_t readWrite = S_IRGRP | S_IWGRP;
    if ((status.st_mode & readWrite) != readWrite) return {};
    const group* const entry = ::getgrgid(status.st_gid);
    return entry ? entry->gr_name : std::to_string(status.st_gid);
}

Port describe(const std::string& path, const fs::path& sys) {
    Port port;
    port.path = path;
    port.group = groupOf(path);
    port.mayOpen = ::access(path.c_str(), R_OK | W_OK) == 0;
    std::error_code ignored;
    const fs::path device = fs::canonical(sys / fs::path(path).filename() / "device", ignored);
    if (ignored) return port;
    port.driver = fs::read_symlink(device / "driver", ignored).filename().string();
    // The adapter is a device some levels above its port.
    for (fs::path level = device; level.has_relative_path(); level = level.parent_path()) {
        if (!fs::exists(level / "product", ignored)) continue;
        port.product = firstLine(level / "product");
        port.vendor = firstLine(level / "manufacturer");
        port.serial = firstLine(level / "serial");
        break;
    }
    return port;
}

// Linux lists four or more ttyS whether they exist or not. Type 0 has no hardware.
bool hasHardware(const std::string& name, const fs::path& sys) {
    if (name.starts_with("ttyAMA")) return true;
    const std::string type = firstLine(sys / name / "type");
    return name.starts_with("ttyS") && !type.empty() && type != "0";
}

}  // namespace

std::vector<Port> portsIn(const std::string& dev, const std::string& sys, bool all) {
    std::vector<Port> ports;
    for (const std::string& path : Wendril::SerialTransport::availablePorts(dev))
        ports.push_back(describe(path, sys));
    if (!all) return ports;
    std::vector<std::string> own;
    std::error_code unreadable;
    for (const auto& entry : fs::directory_iterator(dev, unreadable))
        if (hasHardware(entry.path().filename().string(), sys)) own.push_back(entry.path().string());
    std::ranges::sort(own);
    for (const std::string& path : own)
        if (std::ranges::none_of(ports, [&](const Port& port) { return port.path == path; }))
            ports.push_back(describe(path, sys));
    return ports;
}

void listPorts(const Session& session, bool all) {
    const auto ports = portsIn("/dev", "/sys/class/tty", all);
    Json list = Json::array();
    std::vector<Row> rows;
    for (const Port& port : ports) {
        list.push_back({{"path", port.path},
                        {"product", port.product},
                        {"vendor", port.vendor},
                        {"serial", port.serial},
                        {"driver", port.driver},
                        {"group", port.group},
                        {"mayOpen", port.mayOpen}});
        rows.push_back({port.path, port.product, port.vendor, port.serial, port.driver,
                        port.mayOpen ? "pode abrir" : "sem permissão"});
    }
    if (session.json) return printJson(list);
    if (!rows.empty())
        print(table({"porta", "produto", "fabricante", "série", "driver", "acesso"}, std::move(rows)));
    if (ports.empty())
        std::fprintf(stderr, "nenhuma porta serial encontrada; confira o cabo USB%s\n",
                     all ? "" : " ou veja também ports --all");
    const auto closed = std::ranges::find(ports, false, &Port::mayOpen);
    if (closed != ports.end() && !closed->group.empty())
        std::fprintf(stderr, "para abrir %s: sudo adduser $USER %s, e entre de novo na sessão\n",
                     closed->path.c_str(), closed->group.c_str());
}

}  // namespace Cli
