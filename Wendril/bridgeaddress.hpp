#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Wendril {

/// Where a Wi-Fi bridge listens.
struct BridgeAddress {
    static constexpr std::uint16_t usualPort = 8899;

    std::string host;
    std::uint16_t port = usualPort;

    /// "host" or "host:port"; an IPv6 address stands in brackets where a port follows. Blanks around are
    /// ignored. Throws std::invalid_argument.
    static BridgeAddress parse(std::string_view text);

    bool operator==(const BridgeAddress&) const = default;
};

}  // namespace Wendril
