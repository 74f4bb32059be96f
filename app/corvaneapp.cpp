#include "app/corvaneapp.hpp"

#include "app/snapshot.hpp"

#include "ui/kit/accessibility.hpp"
#include "ui/kit/housestyle.hpp"
#include "ui/kit/theme.hpp"

#include "Wendril/serialports.hpp"
#include "Wendril/transport.hpp"

#include <QApplication>
#include <QPalette>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Corvane {

using namespace Wendril;

namespace {

// The colors of what Qt draws itself: tooltips, menus of text fields, selections.
QPalette darkPalette() {
    QPalette colors;
    colors.setColor(QPalette::Window, Theme::panelBottom);
    colors.setColor(QPalette::WindowText, Theme::text);
    colors.setColor(QPalette::Base, Theme::well);
    colors.setColor(QPalette::AlternateBase, Theme::panelBottom);
    colors.setColor(QPalette::Text, Theme::text);
    colors.setColor(QPalette::Button, Theme::panelTop);
    colors.setColor(QPalette::ButtonText, Theme::text);
    colors.setColor(QPalette::ToolTipBase, Theme::panelTop);
    colors.setColor(QPalette::ToolTipText, Theme::text);
    colors.setColor(QPalette::Highlight, Theme::accent);
    colors.setColor(QPalette::HighlightedText, Theme::well);
    colors.setColor(QPalette::PlaceholderText, Theme::secondary);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        colors.setColor(QPalette::Disabled, role, Theme::secondary);
    return colors;
}

// Blocks of a megabyte, which are pictures, go back to the system when they are freed. By default glibc
// takes all later blocks up to the size of the largest that was freed from the heap, which never shrinks
// below the last block in use.
void giveFreedPicturesBack() {
#ifdef __GLIBC__
    constexpr int megabyte = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, megabyte);
    ::mallopt(M_TRIM_THRESHOLD, 2 * megabyte);
#endif
}

Surroundings surroundingsOf(const Options& options, const Demo* demo, std::shared_ptr<Executor> executor) {
    return {
        .executor = std::move(executor),
        .serialPorts =
            [demo] {
                std::vector<std::string> ports = SerialTransport::availablePorts();
                if (demo) ports.insert(ports.begin(), demo->port());
                return ports;
            },
        .extraPort = options.port.empty() ? options.extraPort : options.port,
        .serial =
            [](const std::string& path) { return std::make_shared<SerialTransport>(path, K7Q::baudRate); },
        .bridge = [](const std::string& host,
                     std::uint16_t port) { return std::make_shared<TCPTransport>(host, port); },
        .stablePortName = [](const std::string& path) { return SerialPorts::stableName(path); },
    };
}

}  // namespace

CorvaneApp::CorvaneApp(const Options& options)
    : demo(options.demoSpeakers ? std::make_unique<Demo>(*options.demoSpeakers) : nullptr)
    , executor(std::make_shared<UiExecutor>())
    , model(std::make_shared<AppModel>(surroundingsOf(options, demo.get(), executor))) {
    if (!options.port.empty()) model->portChoice = options.port;
    if (!options.bridge.empty()) {
        model->espHost = options.bridge;
        model->portChoice = std::string(AppModel::bridgeChoice);
    }
    giveFreedPicturesBack();
    Kit::installAccessibility();
    QApplication::setStyle(new Kit::HouseStyle);
    QApplication::setPalette(darkPalette());
    QApplication::setFont(Theme::font(13));
}

void CorvaneApp::start() {
    if (Snapshot::isActive()) {
        model->start(Snapshot::runIfRequested(model));
        return;
    }
    motion = std::make_unique<Motion>();
    window = std::make_unique<MainWindow>(*model, true);
    window->show();
    window->activateWindow();  // on a display without a window manager nobody else does
    awake = std::make_unique<Awake>(*model);
    portWatch = std::make_unique<PortWatch>([this] { model->refreshPorts(); });
    endSignals = std::make_unique<EndSignals>([this] { window->close(); });
}

std::string CorvaneApp::finish() {
    model->dropEdits();
    return model->unsent;
}

}  // namespace Corvane
