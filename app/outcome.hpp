#pragma once

#include "Wendril/runtime/task.hpp"

#include <exception>
#include <optional>
#include <string>

namespace Corvane {

/// What a task fails with, in the user's words; absent when it succeeds.
inline Wendril::Task<std::optional<std::string>> failureOf(Wendril::Task<void> task) {
    std::optional<std::string> failure;
    try {
        co_await std::move(task);
    } catch (const std::exception& error) {
        failure = error.what();
    }
    co_return failure;
}

/// What a task comes to; absent when it fails.
template <class T>
Wendril::Task<std::optional<T>> resultOf(Wendril::Task<T> task) {
    std::optional<T> result;
    try {
        result = co_await std::move(task);
    } catch (const std::exception&) {
        result.reset();
    }
    co_return result;
}

}  // namespace Corvane
