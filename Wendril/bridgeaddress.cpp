#include "Wendril/bridgeaddress.hpp"

#include <charconv>
#include <optional>
#include <stdexcept>

namespace Wendril {

namespace {

struct Parts {
    std::string_view host;
    std::optional<std::string_view> port;
};

// A bare IPv6 address has colons of its own and no port.
Parts split(std::string_view text) {
    const std::size_t bracket = text.starts_with('[') ? text.find(']') : text.npos;
    if (bracket != text.npos) {
        const std::string_view host = text.substr(1, bracket - 1);
        const std::string_view rest = text.substr(bracket + 1);
        if (rest.empty()) return {host, std::nullopt};
        if (!rest.starts_with(':')) return {};
        return {host, rest.substr(1)};
    }
    const std::size_t colon = text.find(':');
    if (colon == text.npos || text.find(':', colon + 1) != text.npos) return {text, std::nullopt};
    return {text.substr(0, colon), text.substr(colon + 1)};
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace

BridgeAddress BridgeAddress::parse(std::string_view text) {
    const auto [host, port] = split(trimmed(text));
    if (host.empty()) throw std::invalid_argument("falta o endereço da ponte");
    BridgeAddress address{std::string(host)};
    if (!port) return address;
    const char* const end = port->data() + port->size();
    const auto [rest, error] = std::from_chars(port->data(), end, address.port);
    if (error != std::errc() || rest != end || address.port == 0)
        throw std::invalid_argument("a porta da ponte vai de 1 a 65535, não \"" + std::string(*port) + "\"");
    return address;
}

}  // namespace Wendril
