#include "bench/livewindow.hpp"

#include "tests/simulatorprocess.hpp"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <sys/resource.h>

// Without arguments the program prints the table; it measures by starting itself with one of these.

namespace {

using Values = std::map<std::string, double>;

struct Part {
    const char* option;
    std::function<void(const std::string& port, const std::string& scene)> run;
};

const Part parts[] = {
    {"--start", [](const auto&, const auto&) { Bench::measureStart(); }},
    {"--window", [](const auto& port, const auto& scene) { Bench::measureWindow(port, scene); }},
    {"--canvas", [](const auto& port, const auto& scene) { Bench::measureCanvas(port, scene); }},
    {"--drags", [](const auto&, const auto&) { Bench::measureDrags(); }},
    {"--changes", [](const auto&, const auto&) { Bench::measureChanges(); }},
    {"--trace-window", [](const auto& port, const auto&) { Bench::traceWindow(port); }},
    {"--trace-canvas", [](const auto& port, const auto& scene) { Bench::traceCanvas(port, scene); }},
};

std::string program;

// Runs a part in a process of its own and returns its output.
std::string outputOf(const char* option, const std::string& ratio, const std::string& scene,
                     const std::vector<std::string>& under = {}) {
    const Tests::SimulatorProcess speakers({});
    std::vector<std::string> command{"/usr/bin/env", "QT_SCALE_FACTOR=" + ratio};
    command.insert(command.end(), under.begin(), under.end());
    command.insert(command.end(), {program, option, speakers.path(), scene});
    Tests::Process run(command);
    std::string output = run.rest();
    if (run.end() != 0) throw std::runtime_error(std::string(option) + " has failed: " + output);
    return output;
}

// Lines "name value"; a name may have spaces. The toolkit prints warnings as well.
void take(Values& values, const std::string& output, const std::string& prefix = {}) {
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t space = line.rfind(' ');
        if (space == line.npos) continue;
        char* end = nullptr;
        const double value = std::strtod(line.c_str() + space, &end);
        if (*end == '\0') values[prefix + line.substr(0, space)] = value;
    }
}

// Calls of futex a second in each phase that the traced part prints.
void takeCalls(Values& values, const char* option, const std::string& ratio, const std::string& scene,
               const std::string& prefix) {
    const std::string trace = scene + "/trace";
    const std::string phases =
        outputOf(option, ratio, scene,
                 {"strace", "-f", "--seccomp-bpf", "-qq", "-ttt", "-e", "trace=futex", "-o", trace});
    std::vector<double> calls;
    std::ifstream file(trace);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string process;
        double time = 0;
        if (words >> process >> time && line.find("futex(") != line.npos) calls.push_back(time);
    }
    std::istringstream lines(phases);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string name;
        double from = 0;
        double to = 0;
        if (!(words >> name >> from >> to)) continue;
        const auto during = std::ranges::count_if(calls, [&](double at) { return at >= from && at < to; });
        values[prefix + name + "_futex"] = double(during) / (to - from);
    }
}

double secondsOfEndedChildren() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// The unattended run, which draws at a ratio of its own.
double cpuOfUnattendedRun() {
    constexpr int pictures = 13;
    const Tests::SimulatorProcess speakers({});
    const QTemporaryDir folder;
    const double before = secondsOfEndedChildren();
    Tests::Process run({"/usr/bin/env", "CORVANE_SNAPSHOT=" + folder.path().toStdString(),
                        "CORVANE_PORT=" + speakers.path(), CORVANE});
    run.rest();
    if (run.end() != 0 || QDir(folder.path()).entryList({"*.png"}).size() != pictures)
        throw std::runtime_error("the unattended run has not made all pictures");
    return secondsOfEndedChildren() - before;
}

Values measure(const std::string& ratio, const std::string& scene) {
    Values values;
    take(values, outputOf("--start", ratio, scene));
    take(values, outputOf("--window", ratio, scene));
    take(values, outputOf("--drags", ratio, scene));
    take(values, outputOf("--canvas", ratio, scene), "floor ");
    takeCalls(values, "--trace-window", ratio, scene, "");
    takeCalls(values, "--trace-canvas", ratio, scene, "floor ");
    return values;
}

void printTable(std::span<const std::string> ratios, const std::vector<Values>& measured) {
    const struct {
        const char* name;
        const char* text;
    } rows[] = {
        {"tone_percent", "TOM online, % of a core"},
        {"tone_large_percent", "the same at 1920 x 1200"},
        {"minimised_percent", "window minimised, online"},
        {"hidden_percent", "window hidden, online"},
        {"tone_futex", "futex calls a second, TOM online"},
        {"knob_futex", "the same while a knob is dragged"},
        {"handle_futex", "the same while a handle is dragged"},
        {"tone_paints", "paint events a second, TOM online"},
        {"tone_pool_threads", "pool threads started by meters"},
        {"knob_ms_pool_threads", "by a knob drag"},
        {"handle_ms_pool_threads", "by a handle drag"},
        {"crossover_ms_pool_threads", "by changes of a crossover"},
        {"offline_mb", "resident MB, offline"},
        {"tone_mb", "resident MB, first page online"},
        {"all_pages_mb", "resident MB, 16 s after all pages twice and ten resizes"},
        {"first_window_ms", "first window, CPU ms"},
        {"page_change_ms", "change of page seen before, CPU ms"},
        {"page_change_worst_ms", "the slowest of them"},
        {"resize_ms", "a step of resizing, CPU ms"},
        {"handle_ms", "handle drag, CPU ms a frame"},
        {"crossover_ms", "crossover change, CPU ms a frame"},
        {"knob_ms", "knob drag, CPU ms a frame"},
    };
    const auto cell = [](const Values& values, const std::string& name) -> std::optional<double> {
        const auto found = values.find(name);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    };
    std::printf("%-52s", "");
    for (const std::string& ratio : ratios)
        std::printf("   ratio %-4s  floor  times", ratio.c_str());
    std::printf("\n");
    for (const auto& [name, text] : rows) {
        std::printf("%-52s", text);
        for (const Values& values : measured) {
            const auto own = cell(values, name);
            const auto floor = cell(values, std::string("floor ") + name);
            std::printf("  %11.2f", own.value_or(NAN));
            if (floor)
                std::printf(" %6.1f %6.1f", *floor, *own / *floor);
            else
                std::printf(" %6s %6s", "", "");
        }
        std::printf("\n");
    }
    std::printf("\n%-52s", "each page");
    for (const std::string& ratio : ratios)
        std::printf("   ratio %-4s %% of a core, paints a second, resident MB", ratio.c_str());
    std::printf("\n");
    for (const auto& [name, percent] : measured.front()) {
        constexpr std::string_view prefix = "page_percent ";
        if (!name.starts_with(prefix)) continue;
        const std::string page = name.substr(prefix.size());
        std::printf("%-52s", page.c_str());
        for (const Values& values : measured)
            std::printf("  %11.2f %11.0f %11.1f", values.at("page_percent " + page),
                        values.at("page_paints " + page), values.at("page_mb " + page));
        std::printf("\n");
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc == 4)
            for (const Part& part : parts)
                if (part.option == std::string_view(argv[1])) {
                    const QApplication application(argc, argv);
                    part.run(argv[2], argv[3]);
                    return 0;
                }
        program = std::filesystem::read_symlink("/proc/self/exe").string();
        const QTemporaryDir scene;
        const std::vector<std::string> ratios{"1", "2"};
        std::vector<Values> measured;
        for (const std::string& ratio : ratios)
            measured.push_back(measure(ratio, scene.path().toStdString()));
        printTable(ratios, measured);
        std::printf("\nunattended run, CPU s %.2f\n", cpuOfUnattendedRun());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
