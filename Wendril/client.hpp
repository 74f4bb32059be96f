#pragma once

#include "Wendril/bus.hpp"
#include "Wendril/profile.hpp"
#include "Wendril/values.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Wendril {

/// The identity of one speaker, as its board reports it.
struct DeviceInfo {
    std::uint8_t product = 0;
    std::uint8_t address = 0;
    std::string model;    // UTF-8
    std::string version;  // "1.4.258"
    std::string date;     // "2024-03-07"
    std::string serial;   // decimal digits

    /// From the payload of a `devInfo` reply; none when it is shorter than 36 bytes.
    static std::optional<DeviceInfo> parse(ByteView payload);

    bool operator==(const DeviceInfo&) const = default;
};

/// Module number to value.
using ModuleValues = std::map<std::uint8_t, ModuleValue>;

/// The command set of a K7Q board. A small value: copies share the bus. Operations may be started on
/// any executor and throw the bus's errors (BusError, or the transport's write error) where nothing
/// else is said. Between the requests of one operation others may be sent.
class K7QClient {
public:
    using Progress = std::function<void(double fraction)>;

    K7QClient(std::shared_ptr<Bus> bus, std::uint8_t product)
        : bus(std::move(bus))
        , product(product) {}

    /// Whether the speaker answers within `timeout`; any failure is a no.
    Task<bool> ping(std::uint8_t address, Duration timeout) const;

    /// The speaker's identity. Throws `rejected` for a reply that is too short.
    Task<DeviceInfo> info(std::uint8_t address) const;

    /// The speakers that answer between the two addresses, both included, in ascending order. Each
    /// silent address takes 200 ms. Never fails.
    Task<std::vector<DeviceInfo>> scan(std::uint8_t first, std::uint8_t last) const;

    /// Gives addresses 1, 2, 3 … in chain order, to 254 speakers at most, and returns their
    /// identities with the new addresses. When a step fails, speakers already addressed keep theirs.
    Task<std::vector<DeviceInfo>> assignAddresses(int maxDevices) const;

    struct Addressing {
        std::vector<DeviceInfo> found;
        bool isCertain = true;
    };

    /// Assigns addresses, and checks them when a step was sent twice: when only its acknowledgement was
    /// lost, the next speaker has taken the same address. Then each address must answer with the
    /// serial code that it was given to, the next address must be silent, and so must be speakers without
    /// an address; else all speakers are addressed again, twice at most.
    Task<Addressing> assignVerified(int maxDevices) const;

    /// The value of one module. Throws `rejected` for a reply that is no value of the module's kind.
    Task<ModuleValue> read(std::uint8_t address, ModuleRef ref) const;

    /// `value` must be of the module's kind. Throws `rejected` when the board refuses it.
    Task<void> write(std::uint8_t address, ModuleRef ref, ModuleValue value) const;

    /// Reads every settable module, numbers 1 to 92 in map order, one request each (about 0.6 s on
    /// the wire). `progress` gets i/92 after each, on the caller's executor. Throws the first
    /// error; nothing of a partial read is returned.
    Task<ModuleValues> readAll(std::uint8_t address, Progress progress) const;

    /// Levels in dB in the order of K7Q::meterChannels, as the board sent them: six, or as many as
    /// the reply holds. Any float may come, also infinities and NaN.
    Task<std::vector<float>> meters(std::uint8_t address) const;

    /// The preset slots of a board.
    struct PresetInfo {
        std::uint32_t startUp = 0;    // slot loaded at power-up
        std::uint32_t validMask = 0;  // bit n: slot n holds a preset
        std::uint32_t current = 0;    // slot now active

        bool isStored(int n) const { return n >= 0 && n < 32 && (validMask >> n & 1) != 0; }

        bool operator==(const PresetInfo&) const = default;
    };

    Task<PresetInfo> presetInfo(std::uint8_t address) const;
    Task<std::string> presetName(std::uint8_t address, std::uint32_t number) const;

    /// These three return whether the acknowledgement's status says that the board has accepted. A
    /// refusal is no error here; `presetInfo` tells what the board did.
    Task<bool> loadPreset(std::uint8_t address, std::uint32_t number) const;

    /// The name is cut after `presetNameBytes` of UTF-8.
    Task<bool> savePreset(std::uint8_t address, std::uint32_t number, std::string name) const;

    /// Numbers from 32 up delete nothing.
    Task<bool> deletePreset(std::uint8_t address, std::uint32_t number) const;

    std::shared_ptr<Bus> bus;
    std::uint8_t product;
};

}  // namespace Wendril
