#include "tests/ui/pages/desk.hpp"

#include "Wendril/limits.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/wellmenu.hpp"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <cmath>

using namespace Tests;

namespace {

/// Knobs, faders and fields whose place, "page/panel/name", matches: which field they edit, and how
/// the ends of their range, their default and their step read.
struct Control {
    const char* place;
    ModuleKind kind;
    const char* field;
    const char* lowest;
    const char* highest;
    const char* standard;  // none for a field to type into, which has no default
    double step;
    bool ownStep = false;  // of the view, not of the board
};

/// Buttons whose place matches: which field a click inverts, or sets to `value`, and whether the
/// button is lit before.
struct Switch {
    const char* place;
    ModuleKind kind;
    const char* field;
    bool lit;
    std::optional<double> value = {};
};

using Kind = ModuleKind;
constexpr const char* none = nullptr;

constexpr Control controls[] = {
    {"TOM/TOM/(Graves|Médios|Agudos)", Kind::peq, "gain", "-12.0 dB", "+12.0 dB", "+0.0 dB", 0.5, true},
    {"TOM/VOLUME/Entrada", Kind::gain, "db", "-60.0 dB", "6.0 dB", "0.0 dB", 0.1},
    {".*/(In|ENTRADA) .", Kind::gain, "db", "-60.0 dB", "6.0 dB", "0.0 dB", 0.1},
    {".*/(Out|SAÍDA) .", Kind::gain, "db", "-60.0 dB", "15.0 dB", "0.0 dB", 0.1},
    {".*/COMPRESSOR/Threshold", Kind::compressor, "threshold", "-20.0 dB", "+22.0 dB", "+22.0 dB", 0.5},
    {".*/COMPRESSOR/Ratio", Kind::compressor, "ratio", "1.0 : 1", "20.0 : 1", "1.0 : 1", 0.1},
    {".*/COMPRESSOR/Attack", Kind::compressor, "attack", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/COMPRESSOR/Release", Kind::compressor, "release", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/COMPRESSOR/Knee", Kind::compressor, "knee", "0 dB", "30 dB", "0 dB", 1},
    {".*/LIMITER/Threshold", Kind::limiter, "threshold", "-20.0 dB", "+24.0 dB", "+24.0 dB", 0.5},
    {".*/LIMITER/Release", Kind::limiter, "release", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/LIMITER/Knee", Kind::limiter, "knee", "0 dB", "30 dB", "0 dB", 1},
    {".*/NOISE GATE/Threshold", Kind::gate, "threshold", "-120 dB", "-60 dB", "-120 dB", 1},
    {".*/NOISE GATE/Attack", Kind::gate, "attack", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/NOISE GATE/Release", Kind::gate, "release", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/Saída .", Kind::delay, "ms", "0.00 ms", "5.00 ms", "0.00 ms", 0.1, true},
    {".*/DELAY/Delay", Kind::delay, "ms", "0.00 ms", "5.00 ms", "0.00 ms", 0.01},
    {".*/Banda .*, frequência", Kind::peq, "fc", "20 Hz", "22.0k", none, 1},
    {".*/Banda .*, Q", Kind::peq, "q", "0.30", "50.00", none, 0.01},
    {".*/Banda .*, ganho", Kind::peq, "gain", "-12.0 dB", "+12.0 dB", none, 0.1},
    {".*/HPF, frequência", Kind::hpf, "fc", "20 Hz", "22.0k", none, 1},
    {".*/LPF, frequência", Kind::lpf, "fc", "20 Hz", "22.0k", none, 1},
};

constexpr Switch switches[] = {
    {"TOM/VOLUME/Mudo d.*", Kind::gain, "mute", false},
    {".*/COMPRESSOR/DESLIGADO", Kind::compressor, "ratio", false, 4},
    {".*/LIMITER/BYPASS", Kind::limiterBypass, "bypass", false},
    {".*/NOISE GATE/BYPASS", Kind::gateBypass, "bypass", false},
    {".*/Delay da saída .|.*/DELAY/OFF", Kind::delay, "bypass", false},
    {".*/MUTE .*", Kind::gain, "mute", false},
    {".*/0° .*", Kind::gain, "phaseNormal", false},
    {".*/IN 1 → OUT [13]|.*/IN 2 → OUT [24]", Kind::mixer, "mute", true},
    {".*/IN 1 → OUT [24]|.*/IN 2 → OUT [13]", Kind::mixer, "mute", false},
    {".*/Banda \\d+", Kind::peq, "bypass", true},
    {".*/EQ RESET", Kind::peq, "gain", false, 0},
    {".*/EQ BYPASS", Kind::peq, "bypass", false},
    {".*/HPF", Kind::hpf, "bypass", false},
    {".*/LPF", Kind::lpf, "bypass", false},
};

// Tone presets, choice of the output, the speakers' presets, menus: below and elsewhere.
constexpr const char* otherButtons =
    "TOM/TOM/.*|.*//(SAÍDA .|TODAS .*)|.*/PRESETS DA CAIXA/.*|.*, (tipo|inclinação)";

bool matches(const QString& text, const QString& pattern) {
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern)).match(text).hasMatch();
}

// Every number differs from those of the neighbouring modules, so that a control at a wrong one
// shows. The ratio of the compressors stays, as it is what switches them on.
ModuleValue numbered(const ModuleRef& ref) {
    ModuleValue value = *ModuleValue::factory(ref);
    std::size_t count = ref.index;
    forEachField(value, [&]<class Field>(std::string_view name, Field& field) {
        if constexpr (std::is_same_v<Field, float> || std::is_same_v<Field, std::uint32_t>) {
            if (ref.kind == Kind::compressor && name == "ratio") return;
            const Limits limits = limitsOf(ref.kind, name, ref.channel);
            const std::size_t n = 1 + (count += 5) % 25;
            field = Field(limits.step == 0 ? K7Q::timeSteps.at(n) : limits.lowest + double(n) * limits.step);
        }
    });
    return value;
}

double numberIn(const ModuleValue& value, std::string_view wanted) {
    double number = 0;
    forEachField(value, [&](std::string_view name, auto field) { number = name == wanted ? field : number; });
    return number;
}

ModuleValue with(ModuleValue value, std::string_view wanted, double number) {
    forEachField(value, [&]<class Field>(std::string_view name, Field& field) {
        if (name == wanted) field = Field(number);
    });
    return value;
}

double numberOf(const Kit::ValueControl& control) {
    const bool isTime = dynamic_cast<const Kit::TimeKnob*>(&control);
    return isTime ? Kit::TimeKnob::timeOf(control.value()) : control.value();
}

QString placeOf(const QString& page, const QWidget& control) {
    const QWidget* panel = &control;
    while (panel && !dynamic_cast<const Kit::Panel*>(panel))
        panel = panel->parentWidget();
    const QStringList path{page, panel ? panel->accessibleName() : "", control.accessibleName()};
    return (path.join('/') + ' ' + control.accessibleDescription()).trimmed();
}

// The modules that a control edits: of both inputs, of all outputs, or of the channel and band that
// its place names. Where it names no channel, the outputs come in order.
std::vector<ModuleRef> modulesOf(ModuleKind kind, const QString& place, int sameBefore) {
    const auto number = [&place](const char* pattern, int otherwise) {
        const QString digits = QRegularExpression(pattern).match(place).captured(1);
        return QString::number(digits.isEmpty() ? otherwise : digits.toInt() - 1);
    };
    const bool all = matches(place, "(TOM|DINÂMICA|LIMITER)/.*");
    const bool input = matches(place, "TOM/TOM/.*|.*(ntrada|In |IN ).*");
    QString channel = (input ? "In" : "Out") + (all ? "." : number("([1-9])", sameBefore));
    if (kind == Kind::mixer) channel = "In" + number("IN (.)", 0) + "-Out" + number("OUT (.)", 0);
    QString band = number("Banda (\\d+)", place.endsWith("Médios") ? 2 : place.endsWith("Agudos") ? 3 : 0);
    if (matches(place, ".*/EQ .*")) band = ".*";
    std::vector<ModuleRef> modules;
    for (const ModuleRef& ref : K7Q::modules())
        if (ref.kind == kind && matches(ref.channel.c_str(), channel) &&
            matches(QString::number(ref.band), band))
            modules.push_back(ref);
    return modules;
}

// That exactly these modules have been sent, with that number and all else as before.
void expectSent(Desk& desk, const std::vector<ModuleRef>& modules, const ModuleValues& before,
                std::string_view field, double number) {
    desk.settle();
    EXPECT_EQ(desk.written().size(), modules.size());
    for (const ModuleRef& module : modules) {
        const ModuleValue held = desk.line->board(0).value(module.index);
        const bool tone = module.kind == Kind::peq && modules.size() == 2;  // it sets the whole band
        EXPECT_EQ(held, with(tone ? held : before.at(module.index), field, number));
    }
}

void check(const Control& row, Desk& desk, Kit::ValueControl& control,
           const std::vector<ModuleRef>& modules) {
    const Limits limits = limitsOf(row.kind, row.field, modules.front().channel);
    const bool isTime = limits.step == 0;  // such a knob counts positions in the table of times
    EXPECT_EQ(control.format(control.range.lower), row.lowest);
    EXPECT_EQ(control.format(control.range.upper), row.highest);
    EXPECT_TRUE(isTime || (control.range.lower == limits.lowest && control.range.upper == limits.highest));
    EXPECT_TRUE(!row.standard || control.format(control.defaultValue) == row.standard);
    EXPECT_TRUE(!row.standard || isTime || control.defaultValue == limits.standard);
    EXPECT_EQ(control.step, row.step);
    EXPECT_TRUE(row.ownStep || control.step == limits.step);

    const ModuleValues before = desk.speaker(0)->values.value();
    const double shown = numberOf(control);
    EXPECT_FLOAT_EQ(shown, numberIn(before.at(modules.front().index), row.field));
    control.moveBySteps(1);
    EXPECT_GT(numberOf(control), shown);
    expectSent(desk, modules, before, row.field, numberOf(control));
}

void check(const Switch& row, Desk& desk, Kit::Button& button, const std::vector<ModuleRef>& modules) {
    const ModuleValues before = desk.speaker(0)->values.value();
    const double inverse = 1 - numberIn(before.at(modules.front().index), row.field);
    EXPECT_EQ(button.isChecked(), row.lit);
    desk.click(button);
    expectSent(desk, modules, before, row.field, row.value.value_or(inverse));
    if (row.value == 0) return;
    EXPECT_NE(button.isChecked(), row.lit);
    desk.click(button);
    EXPECT_EQ(button.isChecked(), row.lit);
    EXPECT_EQ(desk.speaker(0)->values.value(), before) << "a second click takes the first back";
    desk.written();
}

}  // namespace

TEST(ControlsTest, EachShowsAndEditsItsFieldsWithinTheLimits) {
    for (const auto& [page, values, buttons] : {std::tuple{"TOM", 4, 7},
                                                {"DINÂMICA", 8, 7},
                                                {"DELAY", 4, 4},
                                                {"MAIN", 6, 24},
                                                {"LIMITER", 8, 7},
                                                {"IN 1", 17, 14},
                                                {"IN 2", 17, 14},
                                                {"X-OVER", 8, 24},
                                                {"OUT 1", 37, 29},
                                                {"OUT 2", 37, 29},
                                                {"OUT 3", 37, 29},
                                                {"OUT 4", 37, 29}}) {
        Desk desk;
        for (const ModuleRef& ref : K7Q::modules())
            if (ref.kind != Kind::vu) desk.line->board(0).store(ref.index, numbered(ref));
        desk.goTo(page);
        EXPECT_EQ(OnScreen::all<Kit::ValueControl>(desk.page()).size(), values) << page;
        EXPECT_EQ(OnScreen::all<Kit::Button>(desk.page()).size(), buttons) << page;
        std::map<QString, int> seen;
        for (Kit::Control* const each : OnScreen::all<Kit::Control>(desk.page())) {
            const QString place = placeOf(page, *each);
            SCOPED_TRACE(qPrintable(place));
            const auto checkRow = [&](auto& control, const auto& rows) {
                const auto* const row =
                    std::ranges::find_if(rows, [&](auto& row) { return matches(place, row.place); });
                if (row == std::end(rows)) return matches(place, otherButtons);
                check(*row, desk, control, modulesOf(row->kind, place, seen[place]++));
                return true;
            };
            auto* const control = dynamic_cast<Kit::ValueControl*>(each);
            auto* const button = dynamic_cast<Kit::Button*>(each);
            EXPECT_TRUE(!control || checkRow(*control, controls));
            EXPECT_TRUE(!button || checkRow(*button, switches));
        }
    }
}

TEST(ControlsTest, OnlyTheChosenOneOfAGroupIsLit) {
    const std::pair<const char*, QStringList> groups[] = {
        {"TOM", {"PLANO", "VOZ", "MÚSICA", "FESTA", "AO VIVO"}},
        {"DINÂMICA", {"TODAS AS SAÍDAS", "SAÍDA 1", "SAÍDA 2", "SAÍDA 3", "SAÍDA 4"}},
        {"MAIN", {"MAIN", "LIMITER", "IN 1", "IN 2", "X-OVER", "OUT 1", "OUT 2", "OUT 3", "OUT 4"}},
        {"TOM", {"TOM", "DINÂMICA", "DELAY"}},
    };
    Desk desk(2);
    for (const auto& [page, names] : groups) {
        desk.goTo(page);
        for (const QString& clicked : names) {
            desk.click(clicked);
            for (const QString& name : names)
                EXPECT_EQ(desk.lit(name), name == clicked) << qPrintable(name);
        }
    }
}

TEST(ControlsTest, DynamicsGoToTheChosenOutputAndShowTheFirstOfAll) {
    Desk desk;
    desk.goTo("DINÂMICA");
    desk.click("SAÍDA 2");
    desk.press("Attack", Qt::Key_Up);
    desk.click("BYPASS");
    EXPECT_EQ(desk.written(),
              (QStringList{"RMS_DRC/Out1 threshold=22 ratio=1 hold=0 attack=46 release=724 knee=0",
                           "PEAK_DRC_BPS/Out1 bypass=0"}));
    desk.click("TODAS AS SAÍDAS");
    EXPECT_EQ(desk.readOut("Attack"), "45 ms");
    for (const auto& [ratio, title] : {std::pair{1.01F, "DESLIGADO"}, {1.02F, "LIGADO"}}) {
        desk.model->editCompressor([ratio = ratio](DynamicsValue& value) { value.ratio = ratio; });
        EXPECT_TRUE(desk.shows(title)) << ratio;
    }
}
