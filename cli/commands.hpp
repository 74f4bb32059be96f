#pragma once

#include "cli/link.hpp"

#include <cstdint>
#include <string>
#include <vector>

// The commands of corvane-cli. Each prints its result on standard output, as a table or as JSON.
// A wrong argument throws std::invalid_argument before anything is sent; other failures throw other
// exceptions.
namespace Cli {

/// What all commands share.
struct Session {
    Endpoint endpoint;
    bool verbose = false;
    bool json = false;
};

void listPorts(const Session& session);

/// `range`: "FIRST-LAST" or one address, 1 to 255.
void scan(const Session& session, const std::string& range);

/// Asks on the terminal first, unless `confirmed`.
void assignAddresses(const Session& session, bool confirmed);

void showInfo(const Session& session, std::uint8_t address);

/// All 92 settable modules when none is named.
void readModules(const Session& session, std::uint8_t address, const std::vector<std::string>& modules);

/// Reads the module, changes the named fields and writes it whole.
void writeModule(const Session& session, std::uint8_t address, const std::string& module,
                 const std::vector<std::string>& assignments);

/// With `watch`, prints readings until the link ends or the user interrupts.
void showMeters(const Session& session, std::uint8_t address, bool watch);

void listPresets(const Session& session, std::uint8_t address);
void loadPreset(const Session& session, std::uint8_t address, std::uint32_t number);
void savePreset(const Session& session, std::uint8_t address, std::uint32_t number, const std::string& name);
void deletePreset(const Session& session, std::uint8_t address, std::uint32_t number);

/// The curve of an input's equaliser, or of an output's with its crossover.
void showResponse(const Session& session, std::uint8_t address, const std::string& channel);

}  // namespace Cli
