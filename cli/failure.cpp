#include "cli/failure.hpp"

#include "cli/output.hpp"

#include <algorithm>

namespace Cli {

namespace {

Failure failureOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const Failure& failure) {
        return failure;
    } catch (const std::invalid_argument& usage) {
        return {ExitStatus::wrongUsage, usage.what()};
    } catch (const std::exception& other) {
        return {ExitStatus::failed, other.what()};
    }
}

// The word for programs that read the errors.
const char* codeOf(ExitStatus status) {
    switch (status) {
    case ExitStatus::wrongUsage:
        return "wrongUsage";
    case ExitStatus::refused:
        return "refused";
    case ExitStatus::noAnswer:
        return "noAnswer";
    case ExitStatus::cannotOpen:
        return "cannotOpen";
    case ExitStatus::failed:
        break;
    }
    return "failed";
}

}  // namespace

int exitStatusOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const Interrupted& interrupted) {
        return 128 + interrupted.signal;  // as shells report it
    } catch (...) {
        return static_cast<int>(failureOf(error).status);
    }
}

std::string textOf(const std::exception_ptr& error, bool json) {
    const Failure failure = failureOf(error);
    std::string text = failure.what();
    std::ranges::replace(text, '\n', ' ');
    if (!json) return printable(text);
    Json object{{"code", codeOf(failure.status)}, {"message", text}};
    if (failure.address) object["address"] = *failure.address;
    if (failure.function) object["function"] = *failure.function;
    return textOf(Json{{"error", object}});
}

}  // namespace Cli
