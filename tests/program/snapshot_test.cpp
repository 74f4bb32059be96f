#include "simulator/ptyend.hpp"
#include "tests/simulatorprocess.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/runtime/task.hpp"
#include "Wendril/text.hpp"

#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>
#include <map>

using namespace Wendril;

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
            queue, Simulator::LineOptions{
                       .boards = 3, .addressed = addressed, .look = std::chrono::milliseconds(10)});
        end = std::make_unique<Simulator::PtyEnd>(queue, line);
        port = end->path();
    }

    // Runs the program to its end, without a screen; its exit status.
    int run(const std::string& target) {
        return Tests::shell("env -u DISPLAY CORVANE_SNAPSHOT=" + target + " CORVANE_PORT=" + port +
                            " " CORVANE)
            .status;
    }

    // The pictures, all there and of the right size.
    std::vector<QImage> pictures() {
        std::vector<QImage> all;
        for (const std::string& file : files)
            EXPECT_EQ(all.emplace_back(QString::fromStdString(folder + "/" + file)).size(), QSize(2560, 1640))
                << file;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 13);
        return all;
    }

    const std::string folder = ::mkdtemp(std::string("/tmp/corvane-snapshot-XXXXXX").data());
    const std::shared_ptr<SerialQueue> queue = std::make_shared<SerialQueue>("line");
    std::shared_ptr<Simulator::Line> line;
    std::unique_ptr<Simulator::PtyEnd> end;
    std::string port = folder + "/no-port";
};

// Some of the settings that the run makes on every board, and how many modules it changes in all.
constexpr std::pair<const char*, const char*> seeds[] = {
    {"GAIN/In1", "db=-9 mute=0 phaseNormal=1"},
    {"PEQ/Out0/2", "fc=135 gain=4 q=1.5 type=0 bypass=0"},
    {"HPF/Out3", "fc=45 type=5 bypass=0"},
    {"RMS_DRC/Out3", "threshold=6 ratio=4 hold=0 attack=20 release=300 knee=6"},
    {"PEAK_DRC/Out3", "threshold=12 ratio=1 hold=0 release=119 knee=0"},
    {"DELAY/Out2", "ms=2.5 bypass=0"},
};
constexpr int seededModules = 30;

// True when the link was cut while the settings were being written.
Task<bool> hangUpOnceSeeding(std::shared_ptr<Simulator::Line> line, Simulator::PtyEnd* end) {
    while (line->board(0).value(1).as<GainValue>()->db == 0) {
        const bool waited = co_await sleepFor(std::chrono::milliseconds(5));
        if (!waited) co_return false;
    }
    end->hangUp();
    co_return true;
}

}  // namespace

TEST_F(SnapshotTest, SetsUpTheChainAndDrawsEveryPage) {
    connectChain(false);
    EXPECT_EQ(run(folder), 0);
    const auto drawn = pictures();
    for (const QImage& picture : drawn)
        EXPECT_EQ(std::ranges::count(drawn, picture), 1) << "a page is drawn twice";

    std::promise<void> idle;
    queue->post([&idle] { idle.set_value(); });
    idle.get_future().wait();  // the line does nothing more
    EXPECT_EQ(line->summary().faults, std::vector<std::string>{});
    for (std::size_t position = 0; position < 3; ++position) {
        const Simulator::Board& board = line->board(position);
        const auto& preset = board.preset(2);
        ASSERT_TRUE(preset);
        EXPECT_EQ(fieldText(preset->name), "Igreja");
        std::map<std::string, std::string> changes;
        for (const auto& [module, bytes] : preset->settings) {
            EXPECT_EQ(board.stored(module), bytes) << int(module);
            const ModuleRef ref = K7Q::module(module).value();
            if (bytes != ModuleValue::factory(ref)->encoded())
                changes[labelOf(ref)] = fieldsText(board.value(module));
        }
        EXPECT_EQ(changes.size(), seededModules);
        for (const auto& [module, fields] : seeds)
            EXPECT_EQ(changes[module], fields) << module;
    }
}

TEST_F(SnapshotTest, EndsWithoutAChain) {
    EXPECT_EQ(run(folder), 0);
    pictures();
    EXPECT_EQ(run("/proc/no-folder"), 0) << "where no picture can be written";
}

TEST_F(SnapshotTest, EndsWithAChainThatHangsUpInTheMiddle) {
    connectChain(true);
    auto hangingUp = spawn(queue, hangUpOnceSeeding(line, end.get()));
    EXPECT_EQ(run(folder), 0);
    hangingUp.requestStop();
    EXPECT_TRUE(hangingUp.get());
    pictures();
}
