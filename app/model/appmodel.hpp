#pragma once

#include "app/model/editqueue.hpp"
#include "app/model/eventlog.hpp"
#include "app/model/history.hpp"
#include "app/model/linereport.hpp"
#include "app/model/link.hpp"
#include "app/model/property.hpp"
#include "app/model/report.hpp"
#include "app/model/speaker.hpp"
#include "app/model/status.hpp"
#include "app/model/tone.hpp"

#include "Wendril/client.hpp"
#include "Wendril/filtermath.hpp"

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Corvane {

/// What the model needs from outside: the Qt event loop and real ports in the application, a virtual
/// clock and simulated speakers in a test.
struct Surroundings {
    std::shared_ptr<Wendril::Executor> executor;  // of the model and of all that watch it
    std::function<std::vector<std::string>()> serialPorts;
    std::string extraPort;  // offered first; none if empty
    std::function<std::shared_ptr<Wendril::Transport>(const std::string& path)> serial;
    std::function<std::shared_ptr<Wendril::Transport>(const std::string& host, std::uint16_t port)> bridge;
    // The name that an adapter keeps when it is plugged in again; by default its path.
    std::function<std::string(const std::string& path)> stablePortName = {};
};

/// The state of the application and everything that can be done with it. Views watch the fields and
/// call the operations; they write only the fields of the first group. Everything happens on
/// `surroundings.executor`.
///
/// An operation that is a task may be overruled while it waits: by a later operation, by the end of
/// the link or of the model. It then changes nothing more, and ends with the request that it waits
/// for. The model must not be destroyed from a notification of one of its fields.
class AppModel {
public:
    /// A model with its ports listed.
    explicit AppModel(Surroundings surroundings);
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    static constexpr std::string_view bridgeChoice = "esp";
    static constexpr float silence = -std::numeric_limits<float>::infinity();

    // Chosen by the user.
    Property<std::string> portChoice;  // path of a serial port, or `bridgeChoice`
    Property<std::string> espHost{"192.168.4.1"};
    Property<std::optional<std::uint8_t>> target;  // address; absent: all (edits), the first (reads)
    Property<std::optional<int>> output;           // into K7Q::outputs; absent: all
    Property<std::optional<std::string>> notice;   // the latest warning; absent once it is dismissed
    Property<bool> technical{false};

    // Kept by the model.
    Property<Status> status;
    Property<std::optional<double>> progress;  // of the reading of all speakers, 0 to 1
    Property<std::vector<std::string>> ports;
    Property<Speakers> speakers;  // they outlast a lost link
    Property<std::vector<float>> meters{std::vector<float>(Wendril::K7Q::meterChannels.size(), silence)};
    Property<std::map<int, std::string>> devicePresets;  // slot to name, of the focused speaker
    Property<std::optional<int>> currentPreset;          // slot last loaded or reported as current
    Property<std::optional<std::string>> activity;       // of the presets: what is being done now
    Property<Report> report;                             // what has been done
    EventLog events;

    /// The speaker that reads refer to; null if there is none.
    std::shared_ptr<Speaker> focus() const;

    /// The outputs that the output edits of the simple mode go to.
    std::vector<std::string_view> outputs() const;

    // Connection.
    void refreshPorts();
    Wendril::Task<void> connect();
    Wendril::Task<void> disconnect();
    Wendril::Task<void> discover(bool renumber);

    /// Lets the edits that wait go out, for 3 s at most, then disconnects. Another call meanwhile
    /// disconnects at once. A notice tells what could not be sent.
    Wendril::Task<void> leave();

    /// Gives up the edits that are not confirmed, and tells which: by a notice, and in `unsent`.
    void dropEdits();
    std::string unsent;  // since the latest connection; empty if nothing was given up

    /// Reads all settings of the targeted speakers. Edits made meanwhile stay.
    Wendril::Task<void> readAgain();

    /// Edits that are not confirmed yet.
    bool isSending() const { return !edits.isEmpty() || writing.has_value(); }

    /// Counts and frames of the line that is open or was open last, in words.
    LineReport lineReport() const;

    /// Warns the user: the notice, and an event.
    void warn(const std::string& text);

    /// Starts any operation that is a task.
    void start(Wendril::Task<void> operation);

    // Levels in dB: minus infinity for a channel that the board lacks or has not reported.
    float meter(std::string_view channel) const;

    /// Whether anyone sees the levels. While nobody does, `meters` keeps its value, so that readings
    /// do not set the pages in motion.
    void showLevels(bool seen);

    // Settings: of the focused speaker, or the module's default. Kind, channel and band must be a
    // module of the board; a meter has no value.
    std::optional<Wendril::ModuleValue> value(Wendril::ModuleKind kind, std::string_view channel,
                                              int band = 0) const;

    /// The setting as that case; absent when the board has reported another.
    template <class Case>
    std::optional<Case> valueAs(Wendril::ModuleKind kind, std::string_view channel, int band = 0) const {
        const auto current = value(kind, channel, band);
        const Case* const payload = current ? current->as<Case>() : nullptr;
        return payload ? std::optional(*payload) : std::nullopt;
    }

    /// The setting as that case; the module's default when the board has reported another.
    template <class Case>
    Case valueOrDefault(Wendril::ModuleKind kind, std::string_view channel, int band = 0) const {
        if (const auto current = valueAs<Case>(kind, channel, band)) return *current;
        const auto module = Wendril::K7Q::module(Wendril::K7Q::index(kind, channel, band));
        return *Wendril::ModuleValue::factory(*module)->template as<Case>();
    }

    /// Changes a module of the targeted speakers, or of those in `on`, at once and queues it for
    /// sending.
    void set(std::uint8_t index, const Wendril::ModuleValue& value,
             const std::optional<Speakers>& on = std::nullopt);

    // Every change of a setting, and what a recalled preset changes, can be undone until the next
    // discovery or disconnection. Each speaker gets its own earlier values. `history` says what belongs
    // together.
    void undo();
    void redo();
    History history;

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
    // deleted on all targeted ones. While one of the three commands runs, another does nothing.
    Wendril::Task<void> refreshPresets();
    Wendril::Task<void> loadPreset(int number);
    Wendril::Task<void> savePreset(int number, std::string name);
    Wendril::Task<void> deletePreset(int number);

private:
    using GainChange = std::function<void(Wendril::GainValue& value)>;
    using Steps = std::function<Wendril::Task<void>()>;
    // Returns what it has changed.
    using Command = std::function<Wendril::Task<History::Changes>(Wendril::K7QClient client,
                                                                  std::shared_ptr<Speaker> speaker)>;
    struct PresetRun {
        int number;
        std::string doing, done, failed;  // "Salvando", "salvo", "não salvou"; a failure may have no words
    };

    // The steps of the operations. They wait for nothing but by `during`, which throws when the model
    // has ended meanwhile, so that `this` is valid after every wait.
    Wendril::Task<void> operation(Steps steps) const;
    Wendril::Task<void> connectSteps();
    Wendril::Task<void> disconnectSteps();
    Wendril::Task<void> discoverSteps(bool renumber);
    Wendril::Task<void> leaveSteps();
    Wendril::Task<void> readAgainSteps();
    Wendril::Task<void> heal(Wendril::K7QClient client, Generation discovery);
    Wendril::Task<void> watchLine(Wendril::K7QClient client, Generation discovery);
    Wendril::Task<void> readSpeakers(Wendril::K7QClient client, Generation discovery);
    Wendril::Task<void> live(Wendril::K7QClient client, Generation discovery);
    Wendril::Task<void> refreshPresetsSteps();
    Wendril::Task<void> loadPresetSteps(int number);
    Wendril::Task<void> savePresetSteps(int number, std::string name);
    Wendril::Task<void> deletePresetSteps(int number);
    Wendril::Task<void> editsSent(Wendril::Duration longest);
    Wendril::Task<bool> readyForPreset();
    Wendril::Task<void> runPreset(PresetRun run, Command command);

    std::shared_ptr<Wendril::Transport> chosenTransport() const;
    void fail(const std::string& reason);
    void linkLost(const std::string& reason);
    void takeOver(const std::vector<Wendril::DeviceInfo>& found);
    void takeLevels(std::vector<float> levels);
    void warn(std::uint8_t address, const std::string& complaint);
    void tell(std::string text);
    std::optional<Wendril::ModuleValue> write(Speaker& speaker, std::uint8_t index,
                                              const Wendril::ModuleValue& value);
    std::uint64_t beginReading(Speaker& speaker) const;
    bool apply(const History::Step& step, Wendril::ModuleValue History::Change::*side);
    bool isTargeted(const Speaker& speaker) const;
    Speakers targeted() const;
    void editInputGain(const GainChange& change);
    template <class Case>
    void edit(Wendril::ModuleKind kind, const std::vector<std::string_view>& channels,
              const std::function<void(Case&)>& change);
    void rewriteEq(std::string_view channel, const std::function<void(Wendril::PeqValue&)>& change);

    const Surroundings surroundings;
    const Generations life;  // one generation, from the beginning of the model to its end
    Link link;
    EditQueue edits;
    std::vector<float> latestLevels = meters.value();
    bool levelsSeen = true;
    std::optional<WriteKey> writing;  // the edit that is on the line
    bool leaving = false;
    std::map<std::string, std::string> stableNames;  // of the listed ports
    // The chosen port that has vanished, and what was chosen instead.
    struct Pulled {
        std::string name;
        std::string instead;
    };
    std::optional<Pulled> pulled;
    std::weak_ptr<const void> addressing;  // expired unless an addressing is under way
    std::size_t foundBefore = 0;           // speakers, by the latest discovery of this link
    std::uint64_t presetRuns = 0;
};

}  // namespace Corvane
