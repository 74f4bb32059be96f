#pragma once

#include "app/awake.hpp"
#include "app/demo.hpp"
#include "app/endsignals.hpp"
#include "app/model/appmodel.hpp"
#include "app/model/uiexecutor.hpp"
#include "app/motion.hpp"
#include "app/options.hpp"
#include "app/portwatch.hpp"

#include "ui/kit/frameclock.hpp"
#include "ui/pages/shell/mainwindow.hpp"

#include <memory>

namespace Corvane {

/// The program: one model and its window. Create and destroy it on the QApplication's thread.
class CorvaneApp {
public:
    /// Throws std::system_error when the demonstration chain cannot be made.
    explicit CorvaneApp(const Options& options);

    /// Shows the window; in the unattended mode, starts its run instead.
    void start();

    /// Call it when the event loop has ended. Returns in words which edits did not reach the speakers;
    /// empty if all did.
    std::string finish();

private:
    Kit::FrameClock clock;
    std::unique_ptr<Demo> demo;
    std::shared_ptr<UiExecutor> executor;
    std::shared_ptr<AppModel> model;
    std::unique_ptr<MainWindow> window;
    std::unique_ptr<Awake> awake;
    std::unique_ptr<PortWatch> portWatch;
    std::unique_ptr<Motion> motion;
    std::unique_ptr<EndSignals> endSignals;
};

}  // namespace Corvane
