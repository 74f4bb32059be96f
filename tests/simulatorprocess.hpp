#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tests {

/// A running program with its standard output and error in a pipe. The destructor kills it.
class Process {
public:
    explicit Process(std::vector<std::string> command) {
        std::vector<char*> arguments;
        for (std::string& argument : command)
            arguments.push_back(argument.data());
        arguments.push_back(nullptr);
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
        const int error =
            ::posix_spawn(&id, command[0].c_str(), &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        output = ends[0];
        if (error != 0) throw std::runtime_error("cannot start " + command[0]);
    }
    ~Process() {
        end(SIGKILL);
        ::close(output);
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// The next line, without its end; what is left when there is none.
    std::string line() {
        std::size_t end = 0;
        while ((end = unread.find('\n')) == unread.npos)
            if (!read()) return std::exchange(unread, "");
        std::string text = unread.substr(0, end);
        unread.erase(0, end + 1);
        return text;
    }

    /// All output from here to the end of the program.
    std::string rest() {
        while (read()) {
        }
        return std::exchange(unread, "");
    }

    /// Waits until the program has a handler for that signal.
    void awaitHandlerOf(int signal) const {
        const std::string status = "/proc/" + std::to_string(id) + "/status";
        for (std::uint64_t caught = 0; (caught >> (signal - 1) & 1) == 0;) {
            std::ifstream file(status);
            std::string word;
            while (file >> word && word != "SigCgt:") {
            }
            if (!(file >> std::hex >> caught)) throw std::runtime_error("the program has ended");
        }
    }

    /// Sends the signal, if any, and waits for the end. Returns the exit status, or -1 when a signal
    /// killed the program. Output stays readable.
    int end(int signal = 0) {
        if (id == 0) return status;
        if (signal != 0) ::kill(id, signal);
        // A program that has filled the pipe waits until somebody reads.
        while (read()) {
        }
        int raw = 0;
        ::waitpid(std::exchange(id, 0), &raw, 0);
        return status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }

private:
    // Waits for more output; false at its end.
    bool read() {
        std::array<char, 4096> bytes;
        const ssize_t count = ::read(output, bytes.data(), bytes.size());
        if (count <= 0) return false;
        unread.append(bytes.data(), static_cast<std::size_t>(count));
        return true;
    }

    pid_t id = 0;
    int status = 0;
    int output = -1;
    std::string unread;
};

struct Result {
    int status;
    std::string output;
};

/// Runs a shell command to its end.
inline Result shell(const std::string& command) {
    Process process({"/bin/sh", "-c", "exec " + command});
    std::string output = process.rest();
    return {process.end(), std::move(output)};
}

/// corvane-sim, up and serving.
class SimulatorProcess : public Process {
public:
    explicit SimulatorProcess(std::vector<std::string> options)
        : Process(withProgram(std::move(options)))
        , where(line()) {}

    // The last word, or what follows the last colon, of "serial port at PATH" and "listening on
    // HOST:PORT".
    std::string path() const { return where.substr(where.rfind(' ') + 1); }
    std::string port() const { return where.substr(where.rfind(':') + 1); }

private:
    static std::vector<std::string> withProgram(std::vector<std::string> options) {
        options.insert(options.begin(), SIMULATOR);
        return options;
    }

    const std::string where;
};

}  // namespace Tests
