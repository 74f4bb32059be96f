#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>

namespace Cli {

/// The exit statuses of corvane-cli, beside 0 for success and 130 or 143 for an interruption.
enum class ExitStatus { failed = 1, wrongUsage = 2, refused = 3, noAnswer = 4, cannotOpen = 5 };

/// A command that failed, with its exit status and what is known of the request that did.
struct Failure : std::runtime_error {
    Failure(ExitStatus status, const std::string& text, std::optional<std::uint8_t> address = {},
            std::optional<std::uint8_t> function = {})
        : std::runtime_error(text)
        , status(status)
        , address(address)
        , function(function) {}

    ExitStatus status;
    std::optional<std::uint8_t> address;
    std::optional<std::uint8_t> function;  // code of the request
};

/// The process got SIGINT (the user pressed Ctrl-C) or SIGTERM.
struct Interrupted : std::runtime_error {
    explicit Interrupted(int signal)
        : std::runtime_error("interrompido")
        , signal(signal) {}
    int signal;
};

/// How a program ends after an error: its exit status, and one line or, as JSON, one object.
int exitStatusOf(const std::exception_ptr& error);
std::string textOf(const std::exception_ptr& error, bool json);

}  // namespace Cli
