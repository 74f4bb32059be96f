#include "simulator/ptyend.hpp"
#include "tests/simulatorprocess.hpp"

#include "Wendril/client.hpp"

#include <gtest/gtest.h>

#include <QImage>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <set>

using namespace Wendril;

namespace {

const std::vector<std::string> simpleFiles{"0-offline.png", "1-tom.png", "2-dinamica.png", "3-delay.png"};
const std::vector<std::string> technicalFiles{"t0-MAIN.png", "t1-LIMITER.png", "t2-IN1.png",
                                              "t3-IN2.png",  "t4-X-OVER.png",  "t5-OUT1.png",
                                              "t6-OUT2.png", "t7-OUT3.png",    "t8-OUT4.png"};

// A chain in real time, and a folder for the pictures.
class SnapshotTest : public testing::Test {
protected:
    SnapshotTest() {
        char name[] = "/tmp/corvane-snapshot-XXXXXX";
        folder = ::mkdtemp(name);
        connectChain(true);
    }
    ~SnapshotTest() override { std::filesystem::remove_all(folder); }

    void connectChain(bool addressed) {
        line = std::make_shared<Simulator::Line>(
            queue, Simulator::LineOptions{.boards = 3, .addressed = addressed, .hostJitter = 0.25});
        port = std::make_unique<Simulator::PtyEnd>(queue, line);
    }

    static void setUp(const std::string& folder, const std::string& port) {
        ::setenv("CORVANE_SNAPSHOT", folder.c_str(), 1);
        ::setenv("CORVANE_PORT", port.c_str(), 1);
    }

    // Runs the program to its end; its exit status.
    int run() {
        setUp(folder, port->path());
        return Tests::Process({CORVANE}).end();
    }

    template <class Read>
    auto onLine(Read read) {
        std::promise<decltype(read())> result;
        queue->post([&] { result.set_value(read()); });
        return result.get_future().get();
    }

    QImage picture(const std::string& file) { return QImage(QString::fromStdString(folder + "/" + file)); }

    void expectPictures() {
        std::set<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            files.insert(entry.path().filename());
        std::set<std::string> expected(simpleFiles.begin(), simpleFiles.end());
        expected.insert(technicalFiles.begin(), technicalFiles.end());
        EXPECT_EQ(files, expected);
        for (const std::string& file : files)
            EXPECT_EQ(picture(file).size(), QSize(2560, 1640)) << file;
    }

    const std::shared_ptr<SerialQueue> queue = std::make_shared<SerialQueue>("line");
    std::shared_ptr<Simulator::Line> line;
    std::unique_ptr<Simulator::PtyEnd> port;
    std::string folder;
};

PeqValue band(std::string_view channel, int number, float gain, float q) {
    const auto module = K7Q::module(K7Q::index(ModuleKind::peq, channel, number)).value();
    PeqValue value = *ModuleValue::factory(module)->as<PeqValue>();
    value.gain = gain;
    value.q = q;
    return value;
}

// All 92 settings of a board after the run.
std::map<std::uint8_t, Bytes> seededBoard() {
    std::map<std::uint8_t, Bytes> settings;
    for (const ModuleRef& module : K7Q::modules())
        if (const auto value = ModuleValue::factory(module)) settings[module.index] = value->encoded();
    const auto put = [&settings](ModuleKind kind, std::string_view channel, int number, auto value) {
        settings[K7Q::index(kind, channel, number)] = ModuleValue{value}.encoded();
    };
    for (const std::string_view input : K7Q::inputs) {
        put(ModuleKind::gain, input, 0, GainValue{-9, false, true});
        put(ModuleKind::peq, input, 0, PeqValue{100, 5, 0.7F, 1, false});
        put(ModuleKind::peq, input, 2, PeqValue{1000, -1.5F, 1, 0, false});
        put(ModuleKind::peq, input, 3, PeqValue{8000, 3, 0.7F, 2, false});
    }
    put(ModuleKind::peq, "In0", 1, band("In0", 1, 3, 3));
    for (const std::string_view output : K7Q::outputs) {
        const auto compressor = K7Q::module(K7Q::index(ModuleKind::compressor, output, 0)).value();
        DynamicsValue dynamics = *ModuleValue::factory(compressor)->as<DynamicsValue>();
        dynamics.threshold = 6;
        dynamics.ratio = 4;
        dynamics.attack = 20;
        dynamics.release = 300;
        dynamics.knee = 6;
        put(ModuleKind::compressor, output, 0, dynamics);
        put(ModuleKind::limiterBypass, output, 0, false);
        const auto limiter = K7Q::module(K7Q::index(ModuleKind::limiter, output, 0)).value();
        LimiterValue limits = *ModuleValue::factory(limiter)->as<LimiterValue>();
        limits.threshold = 12;
        limits.release = K7Q::nearestTime(120);
        put(ModuleKind::limiter, output, 0, limits);
    }
    put(ModuleKind::delay, "Out0", 0, DelayValue{1.2F, false});
    put(ModuleKind::delay, "Out2", 0, DelayValue{2.5F, false});
    put(ModuleKind::peq, "Out0", 2, band("Out0", 2, 4, 1.5F));
    put(ModuleKind::peq, "Out0", 6, band("Out0", 6, -5, 3));
    put(ModuleKind::hpf, "Out0", 0, FilterValue{120, 9, false});
    put(ModuleKind::lpf, "Out0", 0, FilterValue{1800, 9, false});
    put(ModuleKind::hpf, "Out1", 0, FilterValue{1800, 9, false});
    put(ModuleKind::lpf, "Out2", 0, FilterValue{120, 7, false});
    put(ModuleKind::hpf, "Out3", 0, FilterValue{45, 5, false});
    return settings;
}

}  // namespace

TEST_F(SnapshotTest, SetsUpTheChainAndDrawsEveryPage) {
    connectChain(false);
    EXPECT_EQ(run(), 0);
    expectPictures();
    std::vector<QImage> pictures;
    for (const auto& files : {simpleFiles, technicalFiles})
        for (const std::string& file : files) {
            EXPECT_EQ(std::ranges::count(pictures, picture(file)), 0) << file << " shows a page twice";
            pictures.push_back(picture(file));
        }

    const std::map<std::uint8_t, Bytes> expected = seededBoard();
    for (std::size_t board = 0; board < 3; ++board) {
        const std::map<std::uint8_t, Bytes> held = onLine([&] {
            std::map<std::uint8_t, Bytes> settings;
            for (const auto& [module, bytes] : expected)
                settings[module] = line->board(board).stored(module);
            return settings;
        });
        for (const auto& [module, bytes] : expected)
            EXPECT_EQ(held.at(module), bytes) << "board " << board << " module " << int(module);
        const auto preset = onLine([&] { return line->board(board).preset(2); });
        ASSERT_TRUE(preset);
        EXPECT_EQ(std::string(preset->name.begin(), preset->name.begin() + 7), "Igreja ");
        for (const auto& [module, bytes] : expected)
            EXPECT_EQ(preset->settings.at(module), bytes) << "preset, module " << int(module);
    }
    EXPECT_EQ(onLine([&] { return line->summary().faults; }), std::vector<std::string>{});
}

TEST_F(SnapshotTest, EndsWithoutAChainAndDrawsThat) {
    setUp(folder, folder + "/no-port");
    EXPECT_EQ(Tests::Process({CORVANE}).end(), 0);
    expectPictures();
}

TEST_F(SnapshotTest, EndsWhereNoPictureCanBeWritten) {
    setUp("/proc/no-folder", "");
    EXPECT_EQ(Tests::Process({CORVANE}).end(), 0);
}

TEST_F(SnapshotTest, EndsWithAChainThatHangsUpInTheMiddle) {
    // Seeding has begun once the volume has reached the first board.
    std::function<void()> look = [&] {
        if (line->board(0).value(1) == ModuleValue{GainValue{-9, false, true}}) return port->hangUp();
        queue->postAfter(std::chrono::milliseconds(5), [&] { look(); });
    };
    queue->post([&] { look(); });
    EXPECT_EQ(run(), 0);
    expectPictures();
}
