#include "Wendril/serialports.hpp"

#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace Wendril::SerialPorts {

namespace fs = std::filesystem;

namespace {

// The entries of a folder; none when it cannot be read or vanishes meanwhile.
template <class Use>
void forEachIn(const fs::path& folder, Use use) {
    std::error_code ended;
    fs::directory_iterator entry(folder, ended);
    for (; !ended && entry != fs::directory_iterator(); entry.increment(ended))
        use(entry->path());
}

bool hasOpen(const fs::path& process, const fs::path& file) {
    bool found = false;
    forEachIn(process / "fd", [&](const fs::path& descriptor) {
        std::error_code closed;
        found = found || fs::read_symlink(descriptor, closed) == file;
    });
    return found;
}

}  // namespace

std::string pathOf(const std::string& name) {
    if (name.find('/') != name.npos) return name;
    for (const char* const directory : {"/dev/", "/dev/serial/by-id/"})
        if (std::error_code ignored; fs::exists(directory + name, ignored)) return directory + name;
    return name;
}

std::string stableName(const std::string& path, const std::string& links) {
    std::string name = path;
    std::error_code ignored;
    const fs::path port = fs::canonical(path, ignored);
    forEachIn(links, [&](const fs::path& link) {
        std::error_code dangling;
        if (!port.empty() && fs::canonical(link, dangling) == port) name = link.string();
    });
    return name;
}

std::optional<Holder> holderOf(const std::string& path) {
    std::error_code missing;
    const fs::path port = fs::canonical(path, missing);
    if (missing) return std::nullopt;
    std::optional<Holder> holder;
    forEachIn("/proc", [&](const fs::path& process) {
        const std::string name = process.filename().string();
        int number = 0;
        const auto [rest, error] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (holder || error != std::errc() || number == ::getpid() || !hasOpen(process, port)) return;
        std::string program;
        std::getline(std::ifstream(process / "comm"), program);
        holder = Holder{number, program};
    });
    return holder;
}

std::string inUseBy(const std::string& path) {
    const auto holder = holderOf(path);
    if (!holder) return {};
    return "em uso por " + holder->program + ", processo " + std::to_string(holder->process);
}

}  // namespace Wendril::SerialPorts
