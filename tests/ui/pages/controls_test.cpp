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

constexpr const char* none = nullptr;
constexpr auto gain = ModuleKind::gain;
constexpr auto peq = ModuleKind::peq;
constexpr auto compressor = ModuleKind::compressor;
constexpr auto limiter = ModuleKind::limiter;
constexpr auto gate = ModuleKind::gate;
constexpr auto delay = ModuleKind::delay;

constexpr Control controls[] = {
    {"TOM/TOM/(Graves|Médios|Agudos)", peq, "gain", "-12.0 dB", "+12.0 dB", "+0.0 dB", 0.5, true},
    {"TOM/VOLUME/Entrada", gain, "db", "-60.0 dB", "6.0 dB", "0.0 dB", 0.1},
    {".*/(In|ENTRADA) .", gain, "db", "-60.0 dB", "6.0 dB", "0.0 dB", 0.1},
    {".*/(Out|SAÍDA) .", gain, "db", "-60.0 dB", "15.0 dB", "0.0 dB", 0.1},
    {".*/COMPRESSOR/Threshold", compressor, "threshold", "-20.0 dB", "+22.0 dB", "+22.0 dB", 0.5},
    {".*/COMPRESSOR/Ratio", compressor, "ratio", "1.0 : 1", "20.0 : 1", "1.0 : 1", 0.1},
    {".*/COMPRESSOR/Attack", compressor, "attack", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/COMPRESSOR/Release", compressor, "release", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/COMPRESSOR/Knee", compressor, "knee", "0 dB", "30 dB", "0 dB", 1},
    {".*/LIMITER/Threshold", limiter, "threshold", "-20.0 dB", "+24.0 dB", "+24.0 dB", 0.5},
    {".*/LIMITER/Release", limiter, "release", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/LIMITER/Knee", limiter, "knee", "0 dB", "30 dB", "0 dB", 1},
    {".*/NOISE GATE/Threshold", gate, "threshold", "-120 dB", "-60 dB", "-120 dB", 1},
    {".*/NOISE GATE/Attack", gate, "attack", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/NOISE GATE/Release", gate, "release", "1 ms", "2.90 s", "45 ms", 1, true},
    {".*/Saída .", delay, "ms", "0.00 ms", "5.00 ms", "0.00 ms", 0.1, true},
    {".*/DELAY/Delay", delay, "ms", "0.00 ms", "5.00 ms", "0.00 ms", 0.01},
    {".*/Banda .*, frequência", peq, "fc", "20 Hz", "22.0k", none, 1},
    {".*/Banda .*, Q", peq, "q", "0.30", "50.00", none, 0.01},
    {".*/Banda .*, ganho", peq, "gain", "-12.0 dB", "+12.0 dB", none, 0.1},
    {".*/HPF, frequência", ModuleKind::hpf, "fc", "20 Hz", "22.0k", none, 1},
    {".*/LPF, frequência", ModuleKind::lpf, "fc", "20 Hz", "22.0k", none, 1},
};

constexpr Switch switches[] = {
    {"TOM/VOLUME/Mudo d.*", gain, "mute", false},
    {".*/COMPRESSOR/DESLIGADO", compressor, "ratio", false, 4},
    {".*/LIMITER/BYPASS", ModuleKind::limiterBypass, "bypass", false},
    {".*/NOISE GATE/BYPASS", ModuleKind::gateBypass, "bypass", false},
    {".*/Delay da saída .|.*/DELAY/OFF", delay, "bypass", false},
    {".*/MUTE .*", gain, "mute", false},
    {".*/0° .*", gain, "phaseNormal", false},
    {".*/IN 1 → OUT [13]|.*/IN 2 → OUT [24]", ModuleKind::mixer, "mute", true},
    {".*/IN 1 → OUT [24]|.*/IN 2 → OUT [13]", ModuleKind::mixer, "mute", false},
    {".*/Banda \\d+", peq, "bypass", true},
    {".*/EQ RESET", peq, "gain", false, 0},
    {".*/EQ BYPASS", peq, "bypass", false},
    {".*/HPF", ModuleKind::hpf, "bypass", false},
    {".*/LPF", ModuleKind::lpf, "bypass", false},
};

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
            if (ref.kind == compressor && name == "ratio") return;
            const Limits limits = limitsOf(ref.kind, name, ref.channel);
            const std::size_t n = 1 + (count += 5) % 25;
            field = Field(limits.step == 0 ? K7Q::timeSteps.at(n) : limits.lowest + double(n) * limits.step);
        }
    });
    return value;
}

double numberIn(const ModuleValue& value, std::string_view wanted) {
    double number = std::nan("");
    forEachField(value, [&](std::string_view name, auto field) {
        if (name == wanted) number = field;
    });
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
    const QString place =
        page + '/' + (panel ? panel->accessibleName() : "") + '/' + control.accessibleName();
    return (place + ' ' + control.accessibleDescription()).trimmed();
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
    if (kind == ModuleKind::mixer) channel = "In" + number("IN (.)", 0) + "-Out" + number("OUT (.)", 0);
    const QString band = matches(place, ".*/Médios")   ? "2"
                         : matches(place, ".*/Agudos") ? "3"
                         : matches(place, ".*/EQ .*")  ? ".*"
                                                       : number("Banda (\\d+)", 0);
    std::vector<ModuleRef> modules;
    for (const ModuleRef& ref : K7Q::modules())
        if (ref.kind == kind && matches(QString::fromStdString(ref.channel), channel) &&
            matches(QString::number(ref.band), band))
            modules.push_back(ref);
    return modules;
}

void checkRange(const Kit::ValueControl& control, const Control& row, const ModuleRef& module) {
    const Limits limits = limitsOf(row.kind, row.field, module.channel);
    EXPECT_EQ(control.format(control.range.lower), row.lowest);
    EXPECT_EQ(control.format(control.range.upper), row.highest);
    EXPECT_EQ(control.step, row.step);
    EXPECT_TRUE(row.ownStep || control.step == limits.step);
    EXPECT_TRUE(!row.standard || control.format(control.defaultValue) == row.standard);
    if (limits.step == 0) return;  // a time knob counts positions in the table of times
    EXPECT_EQ(control.range.lower, limits.lowest);
    EXPECT_EQ(control.range.upper, limits.highest);
    EXPECT_TRUE(!row.standard || control.defaultValue == limits.standard);
}

void checkEdit(Desk& desk, Kit::ValueControl& control, const Control& row,
               const std::vector<ModuleRef>& modules) {
    const ModuleValues before = desk.speaker(0)->values.value();
    const double shown = numberOf(control);
    EXPECT_FLOAT_EQ(shown, numberIn(before.at(modules.front().index), row.field));
    control.moveBySteps(1);
    desk.settle();
    EXPECT_GT(numberOf(control), shown);
    EXPECT_EQ(desk.written().size(), modules.size());
    for (const ModuleRef& module : modules) {
        const ModuleValue held = desk.line->board(0).value(module.index);
        const double number = numberIn(held, row.field);
        EXPECT_FLOAT_EQ(number, numberOf(control));
        if (row.kind == peq && modules.size() > 1) continue;  // the tone control sets the whole band
        EXPECT_EQ(held, with(before.at(module.index), row.field, number));
    }
}

void checkSwitch(Desk& desk, Kit::Button& button, const Switch& row, const std::vector<ModuleRef>& modules) {
    const ModuleValues before = desk.speaker(0)->values.value();
    EXPECT_EQ(button.isChecked(), row.lit);
    desk.click(button);
    EXPECT_EQ(desk.written().size(), modules.size());
    for (const ModuleRef& module : modules) {
        const ModuleValue& old = before.at(module.index);
        const double number = row.value.value_or(1 - numberIn(old, row.field));
        EXPECT_EQ(desk.line->board(0).value(module.index), with(old, row.field, number));
    }
    if (!button.isCheckable() || row.value == 0) return;
    EXPECT_NE(button.isChecked(), row.lit);
    desk.click(button);
    EXPECT_EQ(button.isChecked(), row.lit);
    EXPECT_EQ(desk.speaker(0)->values.value(), before);
    desk.written();
}

}  // namespace

TEST(ControlsTest, EachShowsAndEditsItsFieldsWithinTheLimits) {
    QStringList pages{"TOM", "DINÂMICA", "DELAY"};
    for (const TechPage& page : TechPage::all)
        pages << page.title();
    for (const QString& page : pages) {
        Desk desk;
        for (const ModuleRef& ref : K7Q::modules())
            if (ref.kind != ModuleKind::vu) desk.line->board(0).store(ref.index, numbered(ref));
        desk.goTo(page);
        std::map<QString, int> seen;
        for (Kit::Control* const each : OnScreen::all<Kit::Control>(desk.page())) {
            const QString place = placeOf(page, *each);
            const int sameBefore = seen[place]++;
            const auto matching = [&place](const auto& row) { return matches(place, row.place); };
            SCOPED_TRACE(qPrintable(place));
            if (auto* const control = dynamic_cast<Kit::ValueControl*>(each)) {
                const auto* const row = std::ranges::find_if(controls, matching);
                ASSERT_NE(row, std::end(controls));
                const auto modules = modulesOf(row->kind, place, sameBefore);
                ASSERT_FALSE(modules.empty());
                checkRange(*control, *row, modules.front());
                checkEdit(desk, *control, *row, modules);
            } else if (auto* const button = dynamic_cast<Kit::Button*>(each)) {
                const auto* const row = std::ranges::find_if(switches, matching);
                if (row != std::end(switches))
                    checkSwitch(desk, *button, *row, modulesOf(row->kind, place, sameBefore));
                else
                    EXPECT_TRUE(matches(place, "TOM/TOM/.*|.*//(SAÍDA .|TODAS AS SAÍDAS)|.*/PRESETS DA "
                                               "CAIXA/.*|.*, (tipo|inclinação)"));
            }
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

TEST(ControlsTest, ATonePresetSetsThreeBandsOfBothInputs) {
    Desk desk;
    desk.goTo("TOM");
    for (const auto& [name, bass, mid, treble] : {std::tuple{"VOZ", -4.F, 2.5F, 1.F},
                                                  {"MÚSICA", 3, 0, 2},
                                                  {"FESTA", 5, -1.5F, 3},
                                                  {"AO VIVO", 2, 1, 1.5F},
                                                  {"PLANO", 0, 0, 0}}) {
        desk.click(name);
        for (const char* const input : {"In0", "In1"}) {
            EXPECT_EQ(desk.held<PeqValue>(0, peq, input, 0), (PeqValue{100, bass, 0.7F, 1, false})) << name;
            EXPECT_EQ(desk.held<PeqValue>(0, peq, input, 2), (PeqValue{1000, mid, 1, 0, false})) << name;
            EXPECT_EQ(desk.held<PeqValue>(0, peq, input, 3), (PeqValue{8000, treble, 0.7F, 2, false}))
                << name;
        }
    }
}

TEST(ControlsTest, DynamicsGoToTheChosenOutput) {
    Desk desk;
    desk.goTo("DINÂMICA");
    desk.click("SAÍDA 2");
    desk.press("Attack", Qt::Key_Up);
    desk.click("DESLIGADO");
    desk.click("BYPASS");
    EXPECT_EQ(desk.written(),
              (QStringList{"RMS_DRC/Out1 threshold=22 ratio=4 hold=0 attack=46 release=724 knee=0",
                           "RMS_DRC/Out1 threshold=22 ratio=4 hold=0 attack=46 release=724 knee=0",
                           "PEAK_DRC_BPS/Out1 bypass=0"}));
    desk.click("TODAS AS SAÍDAS");
    EXPECT_EQ(desk.readOut("Attack"), "45 ms") << "of the first output";
}
