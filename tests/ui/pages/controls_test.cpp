#include "tests/ui/pages/desk.hpp"

#include "Wendril/fields.hpp"
#include "Wendril/limits.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/timeknob.hpp"

#include <gtest/gtest.h>

#include <QRegularExpression>

#include <cmath>

using namespace Tests;

namespace {

// In the tables, a place is "page/panel/name". In the labels of the modules that a control edits, *
// stands for In or Out, %1 and %2 for the numbers in the place, from 0. Without a number, a control
// of the crossover page edits the outputs in order, one of another page all channels.

/// Knobs, faders and fields: what they edit, how both ends of their range and their default read,
/// and their step.
struct Control {
    const char *place, *modules, *field, *lowest, *highest, *standard;
    double step;
};

constexpr const char* none = nullptr;  // a field to type into has no default
constexpr Control controls[] = {
    {"TOM/TOM/Graves", "PEQ/In%1/0", "gain", "-12.0 dB", "+12.0 dB", "+0.0 dB", 0.5},
    {"TOM/TOM/Médios", "PEQ/In%1/2", "gain", "-12.0 dB", "+12.0 dB", "+0.0 dB", 0.5},
    {"TOM/TOM/Agudos", "PEQ/In%1/3", "gain", "-12.0 dB", "+12.0 dB", "+0.0 dB", 0.5},
    {".*/(In .|ENTRADA .|Entrada)", "GAIN/In%1", "db", "-60.0 dB", "6.0 dB", "0.0 dB", 0.1},
    {".*/(Out|SAÍDA) .", "GAIN/Out%1", "db", "-60.0 dB", "15.0 dB", "0.0 dB", 0.1},
    {".*/COMPRESSOR/Threshold", "RMS_DRC/Out%1", "threshold", "-20.0 dB", "+22.0 dB", "+22.0 dB", 0.5},
    {".*/COMPRESSOR/Ratio", "RMS_DRC/Out%1", "ratio", "1.0 : 1", "20.0 : 1", "1.0 : 1", 0.1},
    {".*/COMPRESSOR/Attack", "RMS_DRC/Out%1", "attack", "1 ms", "2.90 s", "45 ms", 1},
    {".*/COMPRESSOR/Release", "RMS_DRC/Out%1", "release", "1 ms", "2.90 s", "45 ms", 1},
    {".*/COMPRESSOR/Knee", "RMS_DRC/Out%1", "knee", "0 dB", "30 dB", "0 dB", 1},
    {".*/LIMITER/Threshold", "PEAK_DRC/Out%1", "threshold", "-20.0 dB", "+24.0 dB", "+24.0 dB", 0.5},
    {".*/LIMITER/Release", "PEAK_DRC/Out%1", "release", "1 ms", "2.90 s", "45 ms", 1},
    {".*/LIMITER/Knee", "PEAK_DRC/Out%1", "knee", "0 dB", "30 dB", "0 dB", 1},
    {".*/NOISE GATE/Threshold", "NG/In%1", "threshold", "-120 dB", "-60 dB", "-120 dB", 1},
    {".*/NOISE GATE/Attack", "NG/In%1", "attack", "1 ms", "2.90 s", "45 ms", 1},
    {".*/NOISE GATE/Release", "NG/In%1", "release", "1 ms", "2.90 s", "45 ms", 1},
    {".*/Saída .", "DELAY/Out%1", "ms", "0.00 ms", "5.00 ms", "0.00 ms", 0.1},
    {".*/DELAY/.*, tempo do delay", "DELAY/*%1", "ms", "0.00 ms", "5.00 ms", "0.00 ms", 0.01},
    {".*/Banda .*, frequência", "PEQ/*%1/%2", "fc", "20 Hz", "22.0k", none, 1},
    {".*/Banda .*, Q", "PEQ/*%1/%2", "q", "0.30", "50.00", none, 0.01},
    {".*/Banda .*, ganho", "PEQ/*%1/%2", "gain", "-12.0 dB", "+12.0 dB", none, 0.1},
    {".*/HPF, frequência", "HPF/Out%1", "fc", "20 Hz", "22.0k", none, 1},
    {".*/LPF, frequência", "LPF/Out%1", "fc", "20 Hz", "22.0k", none, 1},
};

/// Buttons: which flag a click inverts, or which number it sets, and whether they are lit before.
struct Switch {
    const char *place, *modules, *field;
    bool lit;
    const char* number = nullptr;
};

constexpr Switch switches[] = {
    {"TOM/VOLUME/Mudo, Entrada", "GAIN/In%1", "mute", false},
    {"TOM/VOLUME/Mudo, Saídas", "GAIN/Out%1", "mute", false},
    {".*/COMPRESSOR/Compressor", "RMS_DRC/Out%1", "ratio", false, "4"},
    {".*/LIMITER/Limiter", "PEAK_DRC_BPS/Out%1", "bypass", false},
    {".*/NOISE GATE/Noise gate", "NG_BPS/In%1", "bypass", false},
    {".*/Delay, .*", "DELAY/*%1", "bypass", false},
    {".*/Mudo, .*", "GAIN/*%1", "mute", false},
    {".*/Polaridade invertida, .*", "GAIN/*%1", "phaseNormal", false},
    {".*/IN 1 → OUT [13]|.*/IN 2 → OUT [24]", "MIXER/In%1-Out%2", "mute", true},
    {".*/IN 1 → OUT [24]|.*/IN 2 → OUT [13]", "MIXER/In%1-Out%2", "mute", false},
    {".*/Banda \\d+", "PEQ/*%1/%2", "bypass", true},
    {".*/EQ RESET", "PEQ/*%1/.", "gain", false, "0"},
    {".*/EQ BYPASS", "PEQ/*%1/.", "bypass", false},
    {".*/HPF", "HPF/Out%1", "bypass", false},
    {".*/LPF", "LPF/Out%1", "bypass", false},
};

// Buttons of groups and menus have tests of their own.
constexpr const char* others = "TOM/TOM/(Plano|Voz|Música|Festa|Ao vivo)|.*//(Saída .|Todas .*)|.*/PRESETS "
                               "DA CAIXA/.*|.*, (tipo|inclinação)";

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
            if (ref.kind == ModuleKind::compressor && name == "ratio") return;
            const Limits limits = limitsOf(ref.kind, name, ref.channel);
            const std::size_t n = 1 + (count += 5) % 25;
            field = Field(limits.step == 0 ? K7Q::timeSteps.at(n) : limits.lowest + double(n) * limits.step);
        }
    });
    return value;
}

// What the first board holds, as "db=0 mute=1 …" by the labels of its modules.
using State = std::map<QString, QString>;

State stateOf(Desk& desk) {
    desk.settle();
    State state;
    for (const ModuleRef& ref : K7Q::modules())
        if (ref.kind != ModuleKind::vu)
            state[labelOf(ref).c_str()] = fieldsText(desk.line->board(0).value(ref.index)).c_str();
    return state;
}

QRegularExpression regex(const QString& field) { return QRegularExpression("\\b" + field + "=(\\S+)"); }

State with(State state, const QStringList& modules, const QString& field, const QString& number) {
    for (const QString& module : modules)
        state[module].replace(regex(field), field + '=' + number);
    return state;
}

double numberOf(const Kit::ValueControl& control) {
    const bool isTime = dynamic_cast<const Kit::TimeKnob*>(&control);
    return isTime ? K7Q::timeSteps.at(std::size_t(std::lround(control.value()))) : control.value();
}

QString placeOf(const QString& page, const QWidget& control) {
    const QWidget* panel = &control;
    while (panel && !dynamic_cast<const Kit::Panel*>(panel))
        panel = panel->parentWidget();
    return QStringList{page, panel ? panel->accessibleName() : "", control.accessibleName()}.join('/');
}

QStringList modulesOf(QString labels, const QString& place, int sameBefore) {
    labels.replace('*', matches(place, ".*(In |IN ).*") ? "In" : "Out");
    auto number = QRegularExpression("[1-9]\\d*").globalMatch(place);
    while (labels.contains('%'))
        labels = number.hasNext()             ? labels.arg(number.next().captured().toInt() - 1)
                 : place.startsWith("X-OVER") ? labels.arg(sameBefore)
                                              : labels.arg(".");
    QStringList all;
    for (const ModuleRef& ref : K7Q::modules())
        all << labelOf(ref).c_str();
    return all.filter(QRegularExpression(QRegularExpression::anchoredPattern(labels)));
}

void check(const Control& row, Desk& desk, Kit::ValueControl& control, const QStringList& modules) {
    EXPECT_EQ(control.format(control.range.lower), row.lowest);
    EXPECT_EQ(control.format(control.range.upper), row.highest);
    EXPECT_EQ(control.step, row.step);
    EXPECT_TRUE(!row.standard || control.format(control.defaultValue) == row.standard);
    const auto numberIn = [&](const State& state) {
        return regex(row.field).match(state.at(modules.at(0))).captured(1);
    };
    const State before = stateOf(desk);
    EXPECT_FLOAT_EQ(numberOf(control), numberIn(before).toDouble());
    control.moveBySteps(1);
    const State after = stateOf(desk);
    EXPECT_FLOAT_EQ(numberOf(control), numberIn(after).toDouble());
    EXPECT_GT(numberOf(control), numberIn(before).toDouble());
    EXPECT_EQ(after, with(before, modules, row.field, numberIn(after)));
}

void check(const Switch& row, Desk& desk, Kit::Button& button, const QStringList& modules) {
    const State before = stateOf(desk);
    const bool set = before.at(modules.at(0)).contains(QString(row.field) + "=1");
    EXPECT_EQ(button.isChecked(), row.lit);
    desk.click(button);
    EXPECT_EQ(stateOf(desk), with(before, modules, row.field, row.number ? row.number : set ? "0" : "1"));
    if (button.accessibleName() == "EQ RESET") return;
    EXPECT_NE(button.isChecked(), row.lit);
    desk.click(button);
    EXPECT_EQ(button.isChecked(), row.lit);
    EXPECT_EQ(stateOf(desk), before) << "a second click takes the first back";
}

}  // namespace

TEST(ControlsTest, EachShowsAndEditsItsFieldsWithinTheLimits) {
    const std::pair<QString, std::size_t> pages[] = {
        {"TOM", 19},  {"DINÂMICA", 19}, {"DELAY", 8},  {"MAIN", 36},  {"LIMITER", 19}, {"IN 1", 33},
        {"IN 2", 33}, {"X-OVER", 33},   {"OUT 1", 68}, {"OUT 2", 68}, {"OUT 3", 68},   {"OUT 4", 68}};
    for (auto [page, count] : pages) {
        Desk desk;
        for (const ModuleRef& ref : K7Q::modules())
            if (ref.kind != ModuleKind::vu) desk.line->board(0).store(ref.index, numbered(ref));
        desk.goTo(page);
        if (page == "TOM") desk.click("Voz");  // a tone knob also sets frequency, Q and type of its band
        if (page == "LIMITER") desk.click("Saída 2");  // it edits one output
        if (page == "LIMITER") page += " 2";
        EXPECT_EQ(OnScreen::all<Kit::Control>(desk.page()).size(), count) << qPrintable(page);
        std::map<QString, int> seen;
        for (QWidget* const each : OnScreen::all<QWidget>(desk.page())) {
            const QString place = placeOf(page, *each);
            SCOPED_TRACE(qPrintable(place));
            const auto checkBy = [&](const auto& rows, auto* control) {
                if (!control || matches(place, others)) return;
                const auto* const row =
                    std::ranges::find_if(rows, [&](auto& row) { return matches(place, row.place); });
                ASSERT_NE(row, std::end(rows));
                const QStringList modules = modulesOf(row->modules, place, seen[place]++);
                ASSERT_FALSE(modules.isEmpty());
                check(*row, desk, *control, modules);
            };
            checkBy(controls, dynamic_cast<Kit::ValueControl*>(each));
            checkBy(switches, dynamic_cast<Kit::Button*>(each));
        }
    }
}

TEST(ControlsTest, OnlyTheChosenOneOfAGroupIsLit) {
    const std::pair<const char*, QStringList> groups[] = {
        {"TOM", {"Plano", "Voz", "Música", "Festa", "Ao vivo"}},
        {"DINÂMICA", {"Todas as saídas", "Saída 1", "Saída 2", "Saída 3", "Saída 4"}},
        {"MAIN", {"MAIN", "LIMITER", "IN 1", "IN 2", "X-OVER", "OUT 1", "OUT 2", "OUT 3", "OUT 4"}},
        {"TOM", {"TOM", "DINÂMICA", "DELAY"}}};
    Desk desk;
    for (const auto& [page, names] : groups) {
        desk.goTo(page);
        for (const QString& clicked : names) {
            desk.click(clicked);
            for (const QString& name : names)
                EXPECT_EQ(desk.lit(name), name == clicked) << qPrintable(name);
        }
    }
}

TEST(ControlsTest, TheLevelsOfOutputsThatAreNotChosenAreDarkAndKeepTheirPlaces) {
    Desk desk("DINÂMICA");
    ASSERT_TRUE(desk.until([&] { return desk.readOut("Nível, Saída 1") != "—"; }));
    const QWidget& knob = *desk.all<Kit::ValueControl>().back();  // of the limiter, beside the levels
    const QRect place = knob.geometry();
    desk.click("Saída 2");
    ASSERT_TRUE(desk.until([&] { return desk.readOut("Nível, Saída 2") != "—"; }));
    EXPECT_EQ(desk.readOut("Nível, Saída 1"), "—");
    EXPECT_EQ(knob.geometry(), place);
}

TEST(ControlsTest, ARatioUpTo101IsShownAsOff) {
    Desk desk("DINÂMICA");
    for (const auto& [ratio, on] : {std::pair{1.01F, false}, {1.02F, true}}) {
        desk.model->editCompressor([ratio = ratio](DynamicsValue& value) { value.ratio = ratio; });
        EXPECT_EQ(desk.lit("Compressor"), on) << ratio;
    }
}
