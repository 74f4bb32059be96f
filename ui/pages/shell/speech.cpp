#include "ui/pages/shell/speech.hpp"

#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/channelname.hpp"
#include "ui/pages/shared/text.hpp"
#include "ui/pages/shell/diagnostics.hpp"

#include "ui/kit/announcer.hpp"
#include "ui/kit/formats.hpp"

#include "Wendril/text.hpp"

#include <cmath>
#include <memory>

namespace Corvane {

namespace {

constexpr int quarters = 4;

int quarterOf(const AppModel& model) {
    const bool reads = model.status.value().isWorking();
    return reads ? static_cast<int>(std::floor(model.progress.value().value_or(0) * quarters)) : 0;
}

QString targetText(const AppModel& model) {
    const auto target = model.target.value();
    for (const auto& speaker : model.speakers.value())
        if (speaker->address == target)
            return QStringLiteral("Caixa %1 · %2")
                .arg(toQString(Wendril::twoDigits(speaker->address)), toQString(speaker->info.value().model));
    return QStringLiteral("Todas as caixas");
}

QString outputText(const AppModel& model) {
    return model.output.value() ? nameOf(model.outputs().front()) : QStringLiteral("Todas as saídas");
}

}  // namespace

Speech::Speech(AppModel& model, ContentView& view)
    : QObject(&view) {
    // What is so from the beginning is not news.
    const auto tell = [this, &view](auto read) {
        Corvane::bind(*this, std::move(read), [&view, isNews = false](const QString& text) mutable {
            if (isNews) Kit::announce(view, text);
            isNews = true;
        });
    };
    tell([&model] { return Diagnostics::statusText(model.status.value()); });
    tell([&model] {
        const int quarter = quarterOf(model);
        return quarter > 0 ? Formats::percent(static_cast<double>(quarter) / quarters) : QString();
    });
    tell([&model] { return toQString(model.notice.value().value_or(std::string())); });
    tell([&model] { return targetText(model); });
    tell([&model] { return outputText(model); });
    tell([&model] {
        return model.technical.value() ? QStringLiteral("Modo técnico") : QStringLiteral("Modo simples");
    });
    tell([&view] { return view.locked.value() ? QStringLiteral("Travado") : QStringLiteral("Destravado"); });
    Corvane::bind(
        *this, [&model] { return model.report.value(); },
        [&view, before = model.report.value().number](const Report& report) {
            if (report.number != before) Kit::announce(view, toQString(report.text));
        });
}

}  // namespace Corvane
