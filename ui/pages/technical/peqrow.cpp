#include "ui/pages/technical/peqrow.hpp"

#include "app/model/equaliser.hpp"
#include "ui/pages/shared/bind.hpp"
#include "ui/pages/shared/controls.hpp"
#include "ui/pages/shared/modulesetting.hpp"

#include "ui/kit/formats.hpp"
#include "ui/kit/theme.hpp"

#include <QMouseEvent>

#include <cmath>
#include <vector>

namespace Corvane {

using namespace Wendril;

namespace {

constexpr int headerHeight = 14;
constexpr double bypassedOpacity = 0.55;

enum Column { numberColumn, onColumn, typeColumn, fcColumn, qColumn, gainColumn };

struct ColumnLook {
    QStringView title;
    int width;
};

constexpr ColumnLook columns[] = {
    {u"#", 20}, {u"ON", 22}, {u"TIPO", 96}, {u"FREQ", 72}, {u"Q", 52}, {u"GANHO", 64},
};

std::uint8_t raw(PeqType type) { return static_cast<std::uint8_t>(type); }

QString gainText(const PeqValue& band) { return Formats::signedDecibels(band.gain); }
QString qualityText(const PeqValue& band) { return QStringLiteral("Q ") + Formats::quality(band.q); }

}  // namespace

void editBand(AppModel& model, std::string_view channel, int band,
              const std::function<void(PeqValue&)>& change) {
    ModuleSetting<PeqValue>(model, ModuleKind::peq, channel, band).edit([&change](PeqValue& value) {
        change(value);
        value = limitedGainAndQ(value);
    });
}

QString bandText(const PeqValue& band) {
    return QStringList{Formats::formatHz(band.fc), gainText(band), qualityText(band)}.join(
        QStringLiteral(" · "));
}

QString spokenBandText(const PeqValue& band) {
    return QStringList{Formats::spokenHz(band.fc), gainText(band), qualityText(band)}.join(
        QStringLiteral(", "));
}

QString bandName(int band) { return QStringLiteral("Banda %1").arg(band + 1); }

PeqHeader::PeqHeader(QWidget* parent)
    : TableRow(parent) {
    std::vector<QWidget*> captions;
    for (const auto& [title, width] : columns) {
        auto* const caption =
            new Kit::Caption(title.toString(), Theme::font(9, QFont::Normal, 1.2), Theme::secondary, this);
        caption->setFixedWidth(width);
        caption->setAlignment(Qt::AlignCenter);
        captions.push_back(caption);
    }
    setCells(captions);
    setFixedHeight(headerHeight);
}

PeqRow::PeqRow(AppModel& model, std::string_view channel, int band, QWidget* parent)
    : TableRow(parent) {
    const QString name = bandName(band);
    const ModuleSetting<PeqValue> setting(model, ModuleKind::peq, channel, band);
    const auto field = [&](Column column, const QString& what, const Limits& limits, bool logarithmic,
                           const Kit::ValueControl::Format& format) {
        return new Kit::ScrubField(
            name + QStringLiteral(", ") + what, rangeOf(limits), format,
            {.step = limits.step, .logarithmic = logarithmic, .width = columns[column].width}, this);
    };
    number = new Kit::Caption(QString::asprintf("%02d", band + 1), Theme::font(11), Theme::secondary, this);
    number->setFixedWidth(columns[numberColumn].width);
    number->setAlignment(Qt::AlignCenter);
    number->setTabular(true);
    number->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    number->setCursor(Qt::PointingHandCursor);
    on = new Kit::LampSwitch(name, this);
    type = new Kit::WellMenu<std::uint8_t>(columns[typeColumn].width, this);
    type->setAccessibleName(name + QStringLiteral(", tipo"));
    type->setOptions({{raw(PeqType::peak), QStringLiteral("PEQ")},
                      {raw(PeqType::lowShelf), QStringLiteral("Low shelf")},
                      {raw(PeqType::highShelf), QStringLiteral("High shelf")}});
    fc = field(fcColumn, QStringLiteral("frequência"), setting.limits("fc"), true, Formats::formatHz);
    q = field(qColumn, QStringLiteral("Q"), setting.limits("q"), false, Formats::quality);
    gain = field(gainColumn, QStringLiteral("ganho"), setting.limits("gain"), false, Formats::signedDecibels);
    setCells({number, on, type, fc, q, gain});

    const auto edit = [&model, channel, band](auto change) { editBand(model, channel, band, change); };
    on->action = [edit] { edit([](PeqValue& value) { value.bypass = !value.bypass; }); };
    type->onSelect = [edit](std::uint8_t chosen) {
        edit([chosen](PeqValue& value) { value.type = chosen; });
    };
    fc->onChange = [edit](double hz) {
        edit([hz](PeqValue& value) { value.fc = static_cast<std::uint32_t>(std::lround(hz)); });
    };
    q->onChange = [edit](double chosen) {
        edit([chosen](PeqValue& value) { value.q = static_cast<float>(chosen); });
    };
    gain->onChange = [edit](double db) {
        edit([db](PeqValue& value) { value.gain = static_cast<float>(db); });
    };
    Corvane::bind(
        *this, [setting] { return setting.value(); }, [this](const PeqValue& value) { show(value); });
}

void PeqRow::show(const PeqValue& value) {
    on->setOn(!value.bypass);
    type->setSelection(value.type);
    fc->setValue(value.fc);
    q->setValue(value.q);
    gain->setValue(value.gain);
    const double opacity = value.bypass ? bypassedOpacity : 1;
    number->setColor(Theme::faded(Theme::secondary, opacity));
    for (Kit::Control* const control : std::initializer_list<Kit::Control*>{on, type, fc, q, gain})
        control->setOpacity(opacity);
}

void PeqRow::setSelected(bool value) {
    selected = value;
    showUse();
}

void PeqRow::setMarked(bool value) {
    marked = value;
    showUse();
}

void PeqRow::showUse() { setTint(selected ? Theme::accentSoft : marked ? Theme::white(0.07) : QColor()); }

// The number lets its events pass to the row, and is as wide as it above and below.
void PeqRow::mousePressEvent(QMouseEvent* event) {
    const bool onNumber = event->position().x() < number->geometry().right();
    if (event->button() == Qt::LeftButton && onNumber && onSelect) return onSelect();
    QWidget::mousePressEvent(event);
}

void PeqRow::enterEvent(QEnterEvent*) {
    if (onHover) onHover(true);
}

void PeqRow::leaveEvent(QEvent*) {
    if (onHover) onHover(false);
}

void PeqRow::hideEvent(QHideEvent*) {
    if (onHover) onHover(false);
}

}  // namespace Corvane
