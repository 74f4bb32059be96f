#pragma once

#include "cli/session.hpp"

#include <cstdint>
#include <string>
#include <vector>

// The commands of corvane-cli. Each prints its result on standard output, as a table or as JSON.
// A wrong argument throws std::invalid_argument before anything is sent; other failures throw other
// exceptions, mostly a Failure.
namespace Cli {

/// With `all`, also the computer's own ports.
void listPorts(const Session& session, bool all);

/// `range`: "FIRST-LAST" or one address, 1 to 254.
void scan(Session& session, const std::string& range);

/// Asks on the terminal first.
void assignAddresses(Session& session);

void showInfo(Session& session, const Addresses& addresses);

/// All 92 settable modules when none is named.
void readModules(Session& session, const Addresses& addresses, const std::vector<std::string>& modules);

/// Reads the module, changes the named fields, writes it whole and compares what the board holds then.
void writeModule(Session& session, const Addresses& addresses, const std::string& module,
                 const std::vector<std::string>& assignments);

/// With `watched`, prints readings until the link ends, the user interrupts or a speaker has missed
/// ten in a row.
void showMeters(Session& session, const Addresses& addresses, bool watched);

/// The last three throw a Failure `refused` when the board has not done it. Replacing and deleting ask.
void listPresets(Session& session, const Addresses& addresses);
void loadPreset(Session& session, const Addresses& addresses, std::uint32_t number);
void savePreset(Session& session, const Addresses& addresses, std::uint32_t number, const std::string& name);
void deletePreset(Session& session, const Addresses& addresses, std::uint32_t number);

/// Prints a show file. Each request that gets no answer is made again, here and in the next two.
void backup(Session& session, const Addresses& addresses);

/// What differs between a show file and the chain. Speakers match by serial number, then by address.
/// Throws a Failure `refused` when anything differs.
void diff(Session& session, const std::string& file);

struct RestoreOptions {
    std::vector<std::string> only;   // kinds of modules; empty: all
    std::vector<std::string> moves;  // "2=1": what the file holds of 2 goes to 1
    bool dryRun = false;
};

/// Writes what differs from a show file, and reads back each module that it has written. Presets are
/// not touched.
void restore(Session& session, const std::string& file, const RestoreOptions& options);

/// Writes the filters of a text file into the bands of a channel from band `from` on, bypasses those that
/// are left over, and compares what the board holds of each. What was limited or did not fit is told on
/// standard error, or in the JSON.
void importEqualiser(Session& session, const Addresses& addresses, const std::string& channel,
                     const std::string& file, std::uint32_t from);

/// Prints the bands of a channel as such a file.
void exportEqualiser(Session& session, std::uint8_t address, const std::string& channel);

/// Writes a page (HTML, in Portuguese) with all settings and curves of the speakers, to print or archive.
void report(Session& session, const Addresses& addresses, const std::string& file);

/// Pings and reads in turn, for so many seconds, and tells what the line did with each speaker. Throws a
/// Failure `noAnswer` when a reply was lost.
void checkLine(Session& session, const Addresses& addresses, double seconds);

struct ResponseOptions {
    std::vector<std::string> channels;
    std::vector<std::string> sum;  // channels that are added with their gain, polarity, mute and delay
    std::string svg;               // file for a drawing
};

/// Level and phase of inputs' equalisers, of outputs' with their crossovers, and of a sum.
void showResponse(Session& session, const Addresses& addresses, const ResponseOptions& options);

}  // namespace Cli
