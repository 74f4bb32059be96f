// Draws every control of the kit, in its states, to PNG files at the ratios 1 and 2.

#include "ui/kit/analogvu.hpp"
#include "ui/kit/backdrop.hpp"
#include "ui/kit/fader.hpp"
#include "ui/kit/formats.hpp"
#include "ui/kit/iconbutton.hpp"
#include "ui/kit/knob.hpp"
#include "ui/kit/lamp.hpp"
#include "ui/kit/outputmeters.hpp"
#include "ui/kit/panel.hpp"
#include "ui/kit/pillbutton.hpp"
#include "ui/kit/scrubfield.hpp"
#include "ui/kit/symbols.hpp"
#include "ui/kit/theme.hpp"
#include "ui/kit/wellmenu.hpp"

#include <QApplication>
#include <QDir>
#include <QTest>

#include <functional>
#include <tuple>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const QStringList symbols{
    u"minus"_s,
    u"mic"_s,
    u"music.note"_s,
    u"sparkles"_s,
    u"music.mic"_s,
    u"chevron.down"_s,
    u"xmark"_s,
    u"arrow.clockwise"_s,
    u"cable.connector"_s,
    u"cable.connector.horizontal"_s,
    u"dot.radiowaves.left.and.right"_s,
    u"bolt.horizontal"_s,
    u"speaker.slash.fill"_s,
    u"speaker.wave.2.fill"_s,
};

class Sheet : public Kit::Surface {
public:
    explicit Sheet(QSize size)
        : Kit::Surface(nullptr) {
        resize(size);
    }

    std::function<void(QPainter&)> drawing;

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        Kit::drawBackdrop(painter, rect());
        if (drawing) drawing(painter);
        painter.end();
        Kit::Surface::paintEvent(event);
    }
};

void drawSymbols(QPainter& painter) {
    double y = 20;
    for (const double size : {13.0, 15.0, 22.0, 34.0, 64.0}) {
        double x = 20;
        for (const QString& name : symbols) {
            Symbols::draw(painter, name, {x, y, size, size}, Theme::text);
            x += std::max(size * 1.5, 30.0);
        }
        y += size + 20;
    }
    for (const double height : {42.0, 160.0}) {
        const QRectF place(height == 42.0 ? 20 : 120, y, height * Symbols::logoAspect(), height);
        Symbols::drawLogo(painter, place,
                          Theme::vertical({{}, place.size()}, Theme::rgb(1.0, 0.647, 0.322),
                                          Theme::rgb(0.871, 0.373, 0.102)));
    }
}

enum class State { resting, hovered, pressed, focused, disabled, typing };

// Given to the controls when they are on screen.
std::vector<std::pair<QWidget*, State>> states;

void in(State state, QWidget& control) { states.emplace_back(&control, state); }

void apply(QWidget& control, State state) {
    const QPointF centre = QRectF(control.rect()).center();
    QEnterEvent enter(centre, centre, centre);
    if (state == State::hovered) QApplication::sendEvent(&control, &enter);
    if (state == State::pressed) QTest::mousePress(&control, Qt::LeftButton);
    if (state == State::focused) control.setFocus(Qt::TabFocusReason);
    if (state == State::typing) QTest::mouseDClick(&control, Qt::LeftButton);
    control.setEnabled(state != State::disabled);
}

void addKeys(QBoxLayout& rows) {
    using Pill = Kit::PillButton;
    for (const auto size : {Pill::Size::regular, Pill::Size::compact}) {
        auto* const row = new QHBoxLayout;
        for (const State state :
             {State::resting, State::hovered, State::pressed, State::focused, State::disabled})
            for (const bool on : {false, true}) {
                auto* const key = new Pill(on ? u"MUDO"_s : u"VOCAL"_s, size, nullptr);
                key->setIcon(on ? u"speaker.slash.fill"_s : u"music.mic"_s);
                key->setOn(on);
                row->addWidget(key);
                in(state, *key);
            }
        row->addStretch();
        rows.addLayout(row);
    }
    auto* const row = new QHBoxLayout;
    for (const State state :
         {State::resting, State::hovered, State::pressed, State::focused, State::disabled})
        for (const bool on : {false, true}) {
            auto* const key = new Kit::LampSwitch(u"Banda"_s, nullptr);
            key->setOn(on);
            row->addWidget(key);
            in(state, *key);
        }
    for (const State state :
         {State::resting, State::hovered, State::pressed, State::focused, State::disabled}) {
        auto* const button = new Kit::IconButton(u"arrow.clockwise"_s, u"Atualizar portas"_s, 15, nullptr);
        row->addWidget(button);
        in(state, *button);
    }
    row->addWidget(new Kit::Spinner(nullptr));
    row->addStretch();
    rows.addLayout(row);
}

void addFields(QBoxLayout& rows) {
    auto* const row = new QHBoxLayout;
    for (const State state : {State::resting, State::hovered, State::pressed, State::disabled}) {
        auto* const menu = new Kit::WellMenu<int>(138, nullptr);
        menu->setAccessibleName(u"Inclinação"_s);
        menu->setOptions({{0, u"Linkwitz-Riley 24 dB"_s}, {1, u"Butterworth 48 dB"_s}});
        menu->setSelection(state == State::hovered ? 1 : 0);
        row->addWidget(menu);
        in(state, *menu);
        auto* const field =
            new Kit::ScrubField(u"Frequência"_s, {20, 22000}, Formats::frequency,
                                Kit::ScrubField::Look{.step = 1, .logarithmic = true, .width = 72}, nullptr);
        field->setValue(1234);
        row->addWidget(field);
        in(state, *field);
    }
    auto* const typing =
        new Kit::ScrubField(u"Ganho"_s, {-12, 12}, Formats::signedDecibels,
                            Kit::ScrubField::Look{.step = 0.1, .logarithmic = false, .width = 64}, nullptr);
    typing->setValue(-3.5);
    row->addWidget(typing);
    in(State::typing, *typing);
    row->addStretch();
    rows.addLayout(row);
}

void addKnobs(QBoxLayout& rows) {
    auto* const large = new QHBoxLayout;
    for (const double value : {-12.0, -5.0, 0.0, 3.5, 12.0}) {
        auto* const knob = new Kit::Knob(
            u"Médios"_s, {-12, 12}, 0, 0.5, Formats::signedDecibels,
            Kit::KnobLook{.size = 160, .bipolar = true, .minLabel = u"-12"_s, .maxLabel = u"+12"_s}, nullptr);
        knob->setValue(value);
        large->addWidget(knob);
        in(value == 3.5 ? State::hovered : value == 12 ? State::focused : State::resting, *knob);
    }
    rows.addLayout(large);
    auto* const small = new QHBoxLayout;
    for (const double value : {-20.0, 1.5, 22.0}) {
        auto* const knob = new Kit::Knob(
            u"Threshold"_s, {-20, 22}, 22, 0.5, Formats::signedDecibels,
            Kit::KnobLook{.size = 150, .bipolar = false, .minLabel = u"-20"_s, .maxLabel = u"+22"_s},
            nullptr);
        knob->setValue(value);
        small->addWidget(knob);
        in(value == 22 ? State::disabled : State::resting, *knob);
    }
    for (const double size : {96.0, 82.0, 62.0}) {
        auto* const knob = new Kit::TimeKnob(u"Release"_s, size, nullptr);
        knob->setValue(Kit::TimeKnob::positionOf(size == 96 ? 1200 : 45));
        small->addWidget(knob);
    }
    rows.addLayout(small);
}

void addFaders(QBoxLayout& row) {
    for (const double value : {-60.0, -12.4, 0.0, 6.0}) {
        auto* const fader = new Kit::Fader(
            u"Entrada"_s, {-60, 6}, 0, Formats::decibels,
            Kit::Fader::Look{.height = 300, .levels = value < 0 ? 2 : 0, .labelsBelow = value < -20},
            nullptr);
        fader->setValue(value);
        fader->setLevels({-60, -12});
        if (value == -12.4) fader->setLevels({-55, 9});
        row.addWidget(fader, 0, Qt::AlignTop);
        in(value == 0 ? State::hovered : value == 6 ? State::focused : State::resting, *fader);
    }
    auto* const outputs = new Kit::OutputMeters(4, 300, nullptr);
    outputs->setLevels({-59, -20, -6, 5});
    row.addWidget(outputs, 0, Qt::AlignTop);
    auto* const silent = new Kit::OutputMeters(4, 300, nullptr);
    row.addWidget(silent, 0, Qt::AlignTop);
}

void addMeters(QBoxLayout& row) {
    for (const float level : {-100.0F, -18.0F, -12.0F}) {
        auto* const meter = new Kit::AnalogVU(u"ENTRADA L"_s, -18, nullptr);
        meter->setLevel(level);
        row.addWidget(meter);
    }
}

void save(Sheet& sheet, const QString& name) {
    sheet.show();
    sheet.activateWindow();
    for (const auto& [control, state] : std::exchange(states, {}))
        apply(*control, state);
    QTest::qWait(250);
    for (const int ratio : {1, 2}) {
        QImage image(sheet.size() * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        sheet.render(&image);
        image.save(u"%1@%2.png"_s.arg(name).arg(ratio));
    }
}

void saveList() {
    Kit::WellMenu<int> menu(250, nullptr);
    Kit::WellMenu<int>::Options presets;
    for (int slot = 1; slot <= 31; ++slot)
        presets.emplace_back(slot, u"%1 · vazio"_s.arg(slot));
    menu.setOptions(presets);
    menu.setSelection(3);
    menu.show();
    menu.activate();
    QTest::qWait(50);
    QApplication::activePopupWidget()->grab().save(u"list@1.png"_s);
}

}  // namespace

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    const QString folder = count > 1 ? QString::fromLocal8Bit(arguments[1]) : u"."_s;
    QDir().mkpath(folder);
    QDir::setCurrent(folder);
    {
        Sheet sheet({1500, 480});
        sheet.drawing = drawSymbols;
        save(sheet, u"symbols"_s);
    }
    {
        Sheet sheet({1280, 820});
        save(sheet, u"backdrop"_s);
    }
    for (const auto& [name, size, add] :
         std::initializer_list<std::tuple<QString, QSize, void (*)(QBoxLayout&)>>{
             {u"keys"_s, {1160, 320}, addKeys},
             {u"fields"_s, {1200, 200}, addFields},
             {u"knobs"_s, {1100, 580}, addKnobs},
         }) {
        Sheet sheet(size);
        auto* const column = new QVBoxLayout(&sheet);
        column->setContentsMargins(40, 30, 40, 60);
        auto* const panel = new Kit::Panel(name.toUpper(), &sheet);
        column->addWidget(panel);
        add(panel->content());
        save(sheet, name);
    }
    for (const auto& [name, size, add] :
         std::initializer_list<std::tuple<QString, QSize, void (*)(QBoxLayout&)>>{
             {u"faders"_s, {760, 540}, addFaders},
             {u"meters"_s, {1100, 420}, addMeters},
         }) {
        Sheet sheet(size);
        auto* const column = new QVBoxLayout(&sheet);
        column->setContentsMargins(40, 30, 40, 60);
        auto* const panel = new Kit::Panel(name.toUpper(), &sheet);
        panel->setTrailing(new Kit::PillButton(u"LIGADO"_s, Kit::PillButton::Size::compact, panel));
        column->addWidget(panel);
        auto* const row = new QHBoxLayout;
        row->setSpacing(20);
        panel->content().addLayout(row);
        add(*row);
        save(sheet, name);
    }
    saveList();
    return 0;
}
