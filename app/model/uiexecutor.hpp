#pragma once

#include "Wendril/runtime/executor.hpp"

#include <memory>
#include <thread>

namespace Corvane {

/// The Qt event loop of the application, as an executor. Create it on the application's thread, after
/// the application; it may be destroyed on any thread. When it or the application ends, work that has
/// not run is dropped, as is work that is posted later.
class UiExecutor final : public Wendril::Executor {
public:
    UiExecutor();
    ~UiExecutor() override;
    UiExecutor(const UiExecutor&) = delete;
    UiExecutor& operator=(const UiExecutor&) = delete;

    void post(Wendril::UniqueFunction work) override;
    void postAfter(Wendril::Duration delay, Wendril::UniqueFunction work) override;
    bool isCurrent() const override;
    Wendril::TimePoint now() const override;

private:
    class Agenda;
    class Receiver;

    const std::thread::id thread;
    const std::shared_ptr<Agenda> agenda;
};

}  // namespace Corvane
