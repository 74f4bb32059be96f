#pragma once

#include "Wendril/runtime/executor.hpp"

#include <QObject>

#include <memory>

namespace Corvane {

/// The Qt event loop of the thread that creates it, as an executor. Work that is undone when it
/// ends is dropped. Create and destroy it on that thread.
class UiExecutor final : public Wendril::Executor {
public:
    UiExecutor();
    ~UiExecutor() override;
    UiExecutor(const UiExecutor&) = delete;
    UiExecutor& operator=(const UiExecutor&) = delete;

    void post(Wendril::Work work) override;
    void postAfter(Wendril::Duration delay, Wendril::Work work) override;
    bool isCurrent() const override;
    Wendril::TimePoint now() const override;

private:
    class Inbox;

    std::unique_ptr<Inbox> inbox;
};

}  // namespace Corvane
