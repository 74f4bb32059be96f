#include "simulator/ptyend.hpp"
#include "tests/simulatorprocess.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/runtime/task.hpp"
#include "Wendril/text.hpp"

#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <filesystem>
#include <future>
#include <map>

using namespace Wendril;
using namespace std::chrono_literals;

namespace {

const std::vector<std::string> files{"0-offline.png", "1-tom.png",      "2-dinamica.png", "3-delay.png",
                                     "t0-MAIN.png",   "t1-LIMITER.png", "t2-IN1.png",     "t3-IN2.png",
                                     "t4-X-OVER.png", "t5-OUT1.png",    "t6-OUT2.png",    "t7-OUT3.png",
                                     "t8-OUT4.png"};

// A chain in real time, and a folder for the pictures.
class SnapshotTest : public testing::Test {
protected:
    ~SnapshotTest() override { std::filesystem::remove_all(folder); }

    void connectChain(bool addressed) {
        line = std::make_shared<Simulator::Line>(
            queue, Simulator::LineOptions{.boards = 3, .addressed = addressed, .hostJitter = 0.25});
        end = std::make_unique<Simulator::PtyEnd>(queue, line);
        port = end->path();
    }

    // Runs the program to its end, without a screen; its exit status.
    int run(const std::string& pictures) {
        return Tests::resultOf({"/usr/bin/env", "-u", "DISPLAY", "CORVANE_SNAPSHOT=" + pictures,
                                "CORVANE_PORT=" + port, CORVANE})
            .status;
    }

    template <class Read>
    auto onLine(Read read) {
        std::promise<decltype(read())> result;
        queue->post([&] { result.set_value(read()); });
        return result.get_future().get();
    }

    void expectPictures() {
        for (const std::string& file : files)
            EXPECT_EQ(picture(file).size(), QSize(2560, 1640)) << file;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 13);
    }

    QImage picture(const std::string& file) { return QImage(QString::fromStdString(folder + "/" + file)); }

    const std::string folder = ::mkdtemp(std::string("/tmp/corvane-snapshot-XXXXXX").data());
    const std::shared_ptr<SerialQueue> queue = std::make_shared<SerialQueue>("line");
    std::shared_ptr<Simulator::Line> line;
    std::unique_ptr<Simulator::PtyEnd> end;
    std::string port = folder + "/no-port";
};

// What the run sets on every board. Lines of outputs and inputs that repeat these are left out.
constexpr std::pair<const char*, const char*> seeds[] = {
    {"GAIN/In1", "db=-9 mute=0 phaseNormal=1"},
    {"PEQ/In1/0", "fc=100 gain=5 q=0.7 type=1 bypass=0"},
    {"PEQ/In1/2", "fc=1000 gain=-1.5 q=1 type=0 bypass=0"},
    {"PEQ/In1/3", "fc=8000 gain=3 q=0.7 type=2 bypass=0"},
    {"PEQ/In0/1", "fc=329 gain=3 q=3 type=0 bypass=0"},
    {"PEQ/Out0/2", "fc=135 gain=4 q=1.5 type=0 bypass=0"},
    {"PEQ/Out0/6", "fc=1724 gain=-5 q=3 type=0 bypass=0"},
    {"HPF/Out0", "fc=120 type=9 bypass=0"},
    {"HPF/Out1", "fc=1800 type=9 bypass=0"},
    {"HPF/Out3", "fc=45 type=5 bypass=0"},
    {"LPF/Out0", "fc=1800 type=9 bypass=0"},
    {"LPF/Out2", "fc=120 type=7 bypass=0"},
    {"RMS_DRC/Out3", "threshold=6 ratio=4 hold=0 attack=20 release=300 knee=6"},
    {"PEAK_DRC/Out3", "threshold=12 ratio=1 hold=0 release=119 knee=0"},
    {"PEAK_DRC_BPS/Out3", "bypass=0"},
    {"DELAY/Out0", "ms=1.2 bypass=0"},
    {"DELAY/Out2", "ms=2.5 bypass=0"},
};
constexpr int seededModules = 30;

// The settings of a board that differ from the factory's, by label.
std::map<std::string, std::string> changesOf(const std::map<std::uint8_t, Bytes>& settings) {
    std::map<std::string, std::string> changes;
    for (const auto& [number, bytes] : settings) {
        const ModuleRef module = K7Q::module(number).value();
        if (bytes != ModuleValue::factory(module)->encoded())
            changes[labelOf(module)] = fieldsText(ModuleValue::decode(module.kind, bytes).value());
    }
    return changes;
}

// True when the link was cut while the settings were being written.
Task<bool> hangUpOnceSeeding(std::shared_ptr<Simulator::Line> line, Simulator::PtyEnd* end) {
    while (line->board(0).value(1).as<GainValue>()->db == 0) {
        const bool waited = co_await sleepFor(5ms);
        if (!waited) co_return false;
    }
    end->hangUp();
    co_return true;
}

}  // namespace

TEST_F(SnapshotTest, SetsUpTheChainAndDrawsEveryPage) {
    connectChain(false);
    EXPECT_EQ(run(folder), 0);
    expectPictures();
    std::vector<QImage> pictures;
    for (const std::string& file : files)
        pictures.push_back(picture(file));
    for (const QImage& picture : pictures)
        EXPECT_EQ(std::ranges::count(pictures, picture), 1);
    for (std::size_t board = 0; board < 3; ++board) {
        const auto preset = onLine([&] { return line->board(board).preset(2); });
        ASSERT_TRUE(preset);
        EXPECT_EQ(fieldText(preset->name), "Igreja");
        for (const auto& [module, bytes] : preset->settings)
            EXPECT_EQ(onLine([&] { return line->board(board).stored(module); }), bytes) << int(module);
        auto changes = changesOf(preset->settings);
        EXPECT_EQ(changes.size(), seededModules);
        for (const auto& [module, fields] : seeds)
            EXPECT_EQ(changes[module], fields) << module;
    }
    EXPECT_EQ(onLine([&] { return line->summary().faults; }), std::vector<std::string>{});
}

TEST_F(SnapshotTest, EndsWithoutAChain) {
    EXPECT_EQ(run(folder), 0);
    expectPictures();
    EXPECT_EQ(run("/proc/no-folder"), 0) << "where no picture can be written";
}

TEST_F(SnapshotTest, EndsWithAChainThatHangsUpInTheMiddle) {
    connectChain(true);
    auto hangingUp = spawn(queue, hangUpOnceSeeding(line, end.get()));
    EXPECT_EQ(run(folder), 0);
    hangingUp.requestStop();
    EXPECT_TRUE(hangingUp.get());
    expectPictures();
}
