#pragma once

#include "Wendril/linerecord.hpp"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Corvane {

/// What has travelled on the line since it was opened, for a reader.
struct LineReport {
    struct Frame {
        std::chrono::system_clock::time_point at;
        bool sent = false;
        std::uint8_t address = 0;
        std::string meaning;  // "leitura: PEQ 3, SAÍDA 1"
    };

    std::map<std::uint8_t, Wendril::LineRecord::Counts> addresses;  // 255: to all speakers
    std::uint64_t droppedBytes = 0;
    std::vector<Frame> frames;  // oldest first
};

}  // namespace Corvane
