#pragma once

#include "cli/failure.hpp"
#include "cli/session.hpp"
#include "cli/showfile.hpp"

#include "Wendril/client.hpp"

#include <cstdint>

// Saving or restoring a speaker is some hundred requests. On a line that loses replies one loss must not
// end it: a request that is not answered is made again.
namespace Cli {

constexpr int mostAttempts = 4;

/// The result of `request(client)`, a task, which is started up to `attempts` times until it is answered.
template <class Request>
auto insist(Session& session, std::uint8_t address, Request request, int attempts = mostAttempts) {
    for (int left = attempts - 1;; --left) {
        try {
            return session.link().run(request(session.link().client()), address);
        } catch (const Failure& failure) {
            if (failure.status != ExitStatus::noAnswer || left == 0) throw;
        }
    }
}

Wendril::DeviceInfo readInfo(Session& session, std::uint8_t address);
Wendril::ModuleValue readModule(Session& session, std::uint8_t address, const Wendril::ModuleRef& module);

/// Whether a board holds both as the same bytes. Values that are no numbers are equal here.
bool sameBytes(const Wendril::ModuleValue& a, const Wendril::ModuleValue& b);

/// Writes a module and reads it back. Throws a Failure `refused` with what the board holds unless that
/// is `wanted`.
void writeAndCompare(Session& session, std::uint8_t address, const Wendril::ModuleRef& module,
                     const Wendril::ModuleValue& wanted);

/// The settings of a speaker and the names of its presets, with progress on a terminal.
ShowSpeaker readSpeaker(Session& session, const Wendril::DeviceInfo& info);

}  // namespace Cli
