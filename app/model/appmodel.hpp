#pragma once

#include "app/model/property.hpp"
#include "app/model/speaker.hpp"
#include "app/model/status.hpp"
#include "app/model/tone.hpp"

#include "Wendril/client.hpp"
#include "Wendril/filtermath.hpp"

#include <compare>
#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Corvane {

/// What the model finds around it: handed in, so that it runs on the Qt event loop with real
/// speakers as on a test's clock with simulated ones.
struct Surroundings {
    std::shared_ptr<Wendril::Executor> executor;  // of the model and of whoever watches it
    std::function<std::vector<std::string>()> serialPorts;
    std::string extraPort;  // offered first; none if empty
    std::function<std::shared_ptr<Wendril::Transport>(const std::string& path)> serial;
    std::function<std::shared_ptr<Wendril::Transport>(const std::string& host, std::uint16_t port)> bridge;
};

/// The state of the application and everything that can be done with it. Views read the fields,
/// which tell whoever watches them when they change, and call the operations; they write only the
/// fields of the first group. Everything happens on `surroundings.executor`.
///
/// The tasks hold the model weakly: dropping it ends them and closes the link. Where a task finds
/// that its link is no longer the model's, it leaves everything as whoever took over has left it.
class AppModel : public std::enable_shared_from_this<AppModel> {
public:
    /// A model with its ports listed.
    static std::shared_ptr<AppModel> create(Surroundings surroundings);
    ~AppModel();
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    static constexpr std::string_view bridgeChoice = "esp";
    static constexpr std::uint16_t bridgePort = 8899;
    static constexpr float silence = -std::numeric_limits<float>::infinity();

    // Chosen by the user.
    Property<std::string> portChoice;  // path of a serial port, or `bridgeChoice`
    Property<std::string> espHost{"192.168.4.1"};
    Property<std::optional<std::uint8_t>> target;  // address; absent: all (edits), the first (reads)
    Property<std::optional<int>> output;           // into K7Q::outputs; absent: all
    Property<std::optional<std::string>> notice;   // the latest warning
    Property<bool> technical{false};

    // Kept by the model.
    Property<Status> status;
    Property<std::optional<double>> progress;  // of the reading of all speakers, 0 to 1
    Property<std::vector<std::string>> ports;
    Property<Speakers> speakers;  // they outlast a lost link
    Property<std::vector<float>> meters{std::vector<float>(Wendril::K7Q::meterChannels.size(), silence)};
    Property<bool> discovering{false};
    Property<std::map<int, std::string>> devicePresets;  // slot to name, of the focused speaker
    Property<std::optional<int>> currentPreset;          // slot last loaded or reported as current

    /// The speaker that reads refer to; null if there is none.
    std::shared_ptr<Speaker> focus() const;

    /// The outputs that the output edits of the simple mode go to.
    std::vector<std::string_view> outputs() const;

    // Connection.
    void refreshPorts();
    Wendril::Task<void> connect();
    Wendril::Task<void> disconnect();
    Wendril::Task<void> discover(bool renumber);

    /// Starts any operation that is a task.
    void start(Wendril::Task<void> operation);

    // Levels in dB: minus infinity for a channel that the board lacks or has not reported.
    float meter(std::string_view channel) const;

    // Settings: of the focused speaker, or the module's default. Kind, channel and band must be a
    // module of the board; a meter has no value.
    std::optional<Wendril::ModuleValue> value(Wendril::ModuleKind kind, std::string_view channel,
                                              int band = 0) const;

    /// The setting as that case; absent if it is another.
    template <class Case>
    std::optional<Case> valueAs(Wendril::ModuleKind kind, std::string_view channel, int band = 0) const {
        const auto current = value(kind, channel, band);
        const Case* const payload = current ? current->as<Case>() : nullptr;
        return payload ? std::optional(*payload) : std::nullopt;
    }

    /// Changes a setting of the targeted speakers at once and queues it for sending. Of several
    /// unsent values of one module only the newest is sent, in the place of the first.
    void set(std::uint8_t module, const Wendril::ModuleValue& value);

    using CompressorChange = std::function<void(Wendril::DynamicsValue& value)>;
    using LimiterChange = std::function<void(Wendril::LimiterValue& value)>;
    void editCompressor(const CompressorChange& change);
    void editLimiter(const LimiterChange& change);
    void setVolume(double db);
    void toggleMute();

    // Simple mode.
    void setTone(ToneBand band, double db);
    double tone(ToneBand band) const;
    std::optional<TonePreset> activePreset() const;
    void setRoute(std::string_view input, std::string_view output, bool on);
    bool outputsMuted() const;
    void toggleOutputMute();

    // The equaliser of a channel as a whole.
    static int bandsOf(std::string_view channel);
    void setEqBypass(std::string_view channel, bool bypass);
    bool eqBypassed(std::string_view channel) const;
    void resetEq(std::string_view channel);

    /// Both filters of an output, for drawing.
    Wendril::FilterMath::Crossover crossover(std::string_view output) const;

    // Presets in the speakers, slots 1 to 31: listed from the focused speaker, loaded, saved and
    // deleted on all targeted ones.
    Wendril::Task<void> refreshPresets();
    Wendril::Task<void> loadPreset(int number);
    Wendril::Task<void> savePreset(int number, std::string name);
    Wendril::Task<void> deletePreset(int number);

private:
    struct WriteKey {
        std::uint8_t address;
        std::uint8_t index;
        auto operator<=>(const WriteKey&) const = default;  // NOLINT(modernize-use-nullptr): no pointer
    };

    // An unsent edit, taken from the queue.
    struct Edit {
        WriteKey key;
        Wendril::ModuleValue value;
    };

    explicit AppModel(Surroundings surroundings);

    // A request to one speaker.
    using Command =
        std::function<Wendril::Task<void>(Wendril::K7QClient client, std::shared_ptr<Speaker> speaker)>;

    // Each takes the model weakly, and after each wait asks whether it still stands.
    using Weak = std::weak_ptr<AppModel>;
    static Wendril::Task<void> connect(Weak weak);
    static Wendril::Task<void> disconnect(Weak weak);
    static Wendril::Task<bool> leave(Weak weak, std::uint64_t attempt);
    static Wendril::Task<void> discover(Weak weak, bool renumber);
    static Wendril::Task<bool> findSpeakers(Weak weak, std::uint64_t discovery, bool renumber);
    static Wendril::Task<bool> readSpeakers(Weak weak, std::uint64_t discovery);
    static std::shared_ptr<AppModel> ifStill(const Weak& weak, std::uint64_t discovery);
    static Wendril::Task<void> live(Weak weak);
    static Wendril::Task<void> refreshPresets(Weak weak);
    static Wendril::Task<void> loadPreset(Weak weak, int number);
    static Wendril::Task<bool> editsSent(Weak weak);
    static Wendril::Task<void> savePreset(Weak weak, int number, std::string name);
    static Wendril::Task<void> deletePreset(Weak weak, int number);
    static Wendril::Task<bool> askTargeted(Weak weak, Command command, std::string complaint);
    static std::shared_ptr<AppModel> ifStill(const Weak& weak, const Wendril::K7QClient& client);

    std::shared_ptr<Wendril::Transport> chosenTransport() const;
    Wendril::Bus::CloseHandler closeHandler(std::uint64_t attempt);
    void linkLost(std::uint64_t attempt, const std::string& reason);
    void endDiscovery();
    void dropEdits();
    void startLoop();
    void stopLoop();
    std::optional<Edit> nextEdit();
    Speakers targeted() const;
    template <class Case>
    void edit(Wendril::ModuleKind kind, const std::vector<std::string_view>& channels,
              const std::function<void(Case&)>& change);
    void rewriteEq(std::string_view channel, const std::function<void(Wendril::PeqValue&)>& change);

    const Surroundings surroundings;
    std::shared_ptr<Wendril::Bus> bus;         // opening, open or closing: the next one waits for its end
    std::optional<Wendril::K7QClient> client;  // present while connected
    std::uint64_t attempts = 0;                // connects and disconnects; the latest one rules
    std::uint64_t discoveries = 0;             // likewise; the end of a link ends its discovery too
    std::uint64_t listings = 0;                // of presets; likewise
    std::deque<WriteKey> order;
    std::map<WriteKey, Wendril::ModuleValue> pending;
    std::optional<Wendril::Spawned<void>> loop;
};

}  // namespace Corvane
