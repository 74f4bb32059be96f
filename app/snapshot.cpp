#include "app/snapshot.hpp"

#include "app/model/equaliser.hpp"
#include "app/pngfile.hpp"

#include "ui/pages/shared/room.hpp"
#include "ui/pages/shell/contentview.hpp"

#include <QCoreApplication>
#include <QImage>
#include <QPainter>

#include <chrono>
#include <cstdio>
#include <utility>

namespace Corvane::Snapshot {

using namespace Wendril;

namespace {

constexpr const char* folderVariable = "CORVANE_SNAPSHOT";
constexpr const char* portVariable = "CORVANE_PORT";
constexpr double ratio = 2;
constexpr auto settling = std::chrono::seconds(2);  // for the writes to reach the speakers
constexpr int presetSlot = 2;

struct Picture {
    Page page;
    const char* file;
};

constexpr Picture simplePictures[] = {
    {Page::tone, "/1-tom.png"},
    {Page::dynamics, "/2-dinamica.png"},
    {Page::delay, "/3-delay.png"},
};

void render(AppModel& model, Page page, const TechPage& techPage, const QString& path) {
    ContentView view(model, false, nullptr);
    view.page = page;
    view.techPage = techPage;
    view.resize(Room::usual);
    QImage image(Room::usual * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::black);
    view.render(&image);
    if (!writePng(image, path)) return;
    std::printf("%s\n", qPrintable(path));
    std::fflush(stdout);
}

void seedSimpleMode(AppModel& model) {
    model.setTone(ToneBand::bass, 5);
    model.setTone(ToneBand::mid, -1.5);
    model.setTone(ToneBand::treble, 3);
    model.setVolume(-9);
    model.output = std::nullopt;
    model.editCompressor([](DynamicsValue& value) {
        value.threshold = 6;
        value.ratio = 4;
        value.attack = K7Q::nearestTime(20);
        value.release = K7Q::nearestTime(300);
        value.knee = 6;
    });
    for (const std::string_view output : model.outputs())
        model.set(K7Q::index(ModuleKind::limiterBypass, output, 0), ModuleValue{false});
    model.editLimiter([](LimiterValue& value) {
        value.threshold = 12;
        value.release = K7Q::nearestTime(120);
    });
    model.set(K7Q::index(ModuleKind::delay, "Out0", 0), ModuleValue{DelayValue{1.2F, false}});
    model.set(K7Q::index(ModuleKind::delay, "Out2", 0), ModuleValue{DelayValue{2.5F, false}});
}

void seedBand(AppModel& model, std::string_view channel, int band, float gain, std::optional<float> q) {
    PeqValue value = limited(model.valueAs<PeqValue>(ModuleKind::peq, channel, band).value_or(neutralBand));
    value.gain = gain;
    value.q = q.value_or(value.q);
    model.set(K7Q::index(ModuleKind::peq, channel, band), ModuleValue{value});
}

void seedTechnicalMode(AppModel& model) {
    struct Filter {
        ModuleKind kind;
        const char* output;
        FilterValue value;
    };
    constexpr Filter filters[] = {
        {ModuleKind::hpf, "Out0", {.fc = 120, .type = 9}},
        {ModuleKind::lpf, "Out0", {.fc = 1800, .type = 9}},
        {ModuleKind::hpf, "Out1", {.fc = 1800, .type = 9}},
        {ModuleKind::lpf, "Out2", {.fc = 120, .type = 7}},
        {ModuleKind::hpf, "Out3", {.fc = 45, .type = 5}},
    };
    seedBand(model, "Out0", 2, 4, 1.5F);
    seedBand(model, "Out0", 6, -5, 3);
    for (const auto& [kind, output, value] : filters)
        model.set(K7Q::index(kind, output, 0), ModuleValue{value});
    seedBand(model, "In0", 1, 3, std::nullopt);
}

QString technicalFile(std::size_t position) {
    const QString label = TechPage::all.at(position).title().remove(u' ');
    return QStringLiteral("/t%1-%2.png").arg(position).arg(label);
}

}  // namespace

bool isActive() { return qEnvironmentVariableIsSet(folderVariable); }

Task<void> runIfRequested(std::shared_ptr<AppModel> model) {
    if (!isActive()) co_return;
    const QString folder = qEnvironmentVariable(folderVariable);
    if (qEnvironmentVariableIsSet(portVariable)) model->portChoice = qgetenv(portVariable).toStdString();
    const auto steps = watch([&model] { return model->status.value(); },
                             [](const Status& status) {
                                 if (!status.text.empty()) std::fprintf(stderr, "%s\n", status.text.c_str());
                             });
    const TechPage main = TechPage::all.front();

    render(*model, Page::tone, main, folder + QStringLiteral("/0-offline.png"));
    co_await model->connect();

    seedSimpleMode(*model);
    co_await sleepFor(settling);
    for (const auto& [page, file] : simplePictures)
        render(*model, page, main, folder + QLatin1String(file));

    seedTechnicalMode(*model);
    model->technical = true;
    co_await model->savePreset(presetSlot, "Igreja");
    co_await sleepFor(settling);
    for (std::size_t i = 0; i < TechPage::all.size(); ++i)
        render(*model, Page::tone, TechPage::all.at(i), folder + technicalFile(i));

    co_await model->disconnect();
    QCoreApplication::quit();
}

}  // namespace Corvane::Snapshot
