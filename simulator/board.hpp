#pragma once

#include "Wendril/client.hpp"
#include "Wendril/frame.hpp"
#include "Wendril/values.hpp"

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace Simulator {

/// One K7Q board: 98 modules, 32 preset slots, an address. It answers requests and stores module
/// values byte for byte. Line chooses the board that a request reaches, and checks the request
/// first. Not thread-safe.
class Board {
public:
    /// `number` is the position in the chain, from 1; the serial number and the music depend on it.
    /// Address 0 means that the board has none yet.
    Board(int number, std::uint8_t address, std::uint64_t seed);

    /// The reply to a valid request, or none when the board does not know the command. The meters
    /// show the levels at `seconds` (see levels()).
    std::optional<Wendril::Frame> answer(const Wendril::Frame& request, double seconds);

    /// This board's `ack` of `request`, with that status.
    Wendril::Frame acknowledge(const Wendril::Frame& request, std::uint8_t status) const;

    std::uint8_t address() const { return ownAddress; }

    /// Who the board is, as it answers. `assume` makes it another one, and gives it that address; a
    /// version, date or serial number that no board can report throws std::invalid_argument.
    Wendril::DeviceInfo info() const;
    void assume(const Wendril::DeviceInfo& info);

    /// True from `netStart` until the board has taken an address. Meanwhile it answers broadcasts.
    bool awaitsAddress() const { return addressing; }
    void beginAddressing();
    void takeAddress(std::uint8_t address);

    /// The stored setting of a module, 1 to 92, as bytes and as a value.
    const Wendril::Bytes& stored(std::uint8_t module) const { return settings.at(module); }
    Wendril::ModuleValue value(std::uint8_t module) const;
    void store(std::uint8_t module, const Wendril::ModuleValue& value);

    struct Preset {
        Wendril::Bytes name;  // 20 bytes as they came
        std::map<std::uint8_t, Wendril::Bytes> settings;
    };
    const std::optional<Preset>& preset(std::size_t slot) const { return presets.at(slot); }

    /// Fills a preset with the settings of now. The name is cut after 20 bytes.
    void storePreset(std::size_t slot, std::string_view name);

    /// Levels in dB at a time, in the order of K7Q::meterChannels: test music that passes through
    /// the gains, mutes and routing of the board. It is the same for the same seed.
    std::array<float, 6> levels(double seconds) const;

    static constexpr std::uint8_t accepted = 0;
    static constexpr std::uint8_t refused = 3;

private:
    Wendril::Frame reply(Wendril::Fun fun, Wendril::Bytes payload) const;
    Wendril::Frame identity() const;
    Wendril::Frame moduleReply(std::uint8_t module, double seconds) const;
    Wendril::Frame changeModule(const Wendril::Frame& request);
    Wendril::Frame presetDirectory() const;
    Wendril::Frame presetName(const Wendril::Frame& request) const;
    Wendril::Frame changePreset(const Wendril::Frame& request);
    float musicLevel(std::size_t input, double seconds) const;

    // What a board reports of itself, as bytes from byte 8 of its identity.
    struct Identity {
        std::array<std::uint8_t, 8> release;  // version and date
        std::string model;
        std::uint32_t serialHigh;
        std::uint32_t serialLow;
    };

    const int number;
    const std::uint64_t seed;
    Identity who;
    std::uint8_t ownAddress;
    bool addressing = false;
    std::map<std::uint8_t, Wendril::Bytes> settings;
    std::array<std::optional<Preset>, 32> presets;
    std::uint32_t currentPreset = 0;
};

}  // namespace Simulator
