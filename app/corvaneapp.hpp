#pragma once

#include "app/demo.hpp"
#include "app/model/appmodel.hpp"
#include "app/model/uiexecutor.hpp"
#include "app/options.hpp"

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

private:
    std::unique_ptr<Demo> demo;
    std::shared_ptr<UiExecutor> executor;
    std::shared_ptr<AppModel> model;
    std::unique_ptr<MainWindow> window;
};

}  // namespace Corvane
