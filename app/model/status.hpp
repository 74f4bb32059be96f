#pragma once

#include <string>

namespace Corvane {

/// The state of the connection and its one line of text.
struct Status {
    enum class Case { working, online, error, offline };

    static Status working(std::string step) { return {Case::working, std::move(step)}; }
    static Status online(std::string link) { return {Case::online, std::move(link)}; }
    static Status error(std::string reason) { return {Case::error, std::move(reason)}; }
    static Status offline() { return {}; }

    Case state = Case::offline;
    std::string text;

    bool isWorking() const { return state == Case::working; }
    bool isOnline() const { return state == Case::online; }

    bool operator==(const Status&) const = default;
};

}  // namespace Corvane
