#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace Tests {

/// The threads of this process that belong to the toolkit's pool.
inline int threadsOfThePool() {
    int count = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(thread.path() / "comm");
        std::string name;
        std::getline(file, name);
        count += name == "Thread (pooled)" ? 1 : 0;
    }
    return count;
}

}  // namespace Tests
