#include "rig.hpp"

#include "Wendril/limits.hpp"

#include <random>

namespace Tests {
namespace {

using Values = std::vector<ModuleValues>;

Values valuesOf(const Rig& rig) {
    Values all;
    for (const auto& speaker : rig.model->speakers.value())
        all.push_back(speaker->values.value());
    return all;
}

TEST(UndoTest, EverySpeakerGetsItsOwnEarlierValueBack) {
    Rig rig(chainOf(3));
    for (const std::size_t board : {0U, 1U, 2U})
        rig.line->board(board).store(3, gain(-static_cast<float>(board)));
    rig.goOnline();
    const Values before = valuesOf(rig);
    rig.model->set(3, gain(6));
    rig.model->undo();
    rig.model->undo();
    EXPECT_EQ(rig.model->report.value(), (Report{2, "Nada a desfazer"}));
    rig.time.advance(1s);
    EXPECT_EQ(valuesOf(rig), before);
    EXPECT_EQ(rig.written(), (std::vector{3, 3, 3})) << "the edit that waited was replaced";
    EXPECT_EQ(rig.differing(), none);
    rig.model->target = 1;  // undone on all, whatever is chosen now
    rig.model->redo();
    EXPECT_EQ(rig.shown(2, 3), gain(6));
    EXPECT_EQ(rig.model->report.value().text, "Refeito: GANHO, SAÍDA 1, 3 caixas");
    rig.model->undo();
    rig.model->set(4, gain(1));
    rig.model->redo();
    EXPECT_EQ(rig.model->report.value().text, "Nada a refazer") << "an edit ends what could be redone";
}

// Random gestures, as a drag, clicks, notches and keys make them, on one or all speakers.
TEST(UndoTest, AllStepsUndoneAndRedoneGiveTheValuesOfEachMoment) {
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::mt19937 random(seed);
        Rig rig(chainOf(3));
        rig.goOnline();
        AppModel& model = *rig.model;
        std::vector<Values> moments{valuesOf(rig)};
        const auto edit = [&] { model.setVolume(-static_cast<double>(random() % 50)); };
        const std::function<void()> gestures[] = {
            [&] { edit(); },
            [&] { model.resetEq("Out2"), model.setEqBypass("Out2", random() % 2); },
            [&] {
                for (const ToneBand band : toneBands)
                    model.setTone(band, random() % 12);
            },
            [&] { model.toggleOutputMute(); },
        };
        for (int step = 0; step < 60; ++step) {
            model.target = random() % 2 ? std::optional<std::uint8_t>(1 + random() % 3) : std::nullopt;
            model.history.beginGesture();
            for (auto events = random() % 5; events-- > 0;)
                gestures[random() % 4]();
            model.history.endGesture();
            rig.time.advance(std::chrono::milliseconds(random() % 900));
            if (valuesOf(rig) != moments.back()) moments.push_back(valuesOf(rig));
        }
        for (std::size_t i = moments.size(); i-- > 0; model.undo())
            ASSERT_EQ(valuesOf(rig), moments[i]) << seed << " undone to " << i;
        rig.time.advance(20s);
        EXPECT_EQ(rig.differing(), none);
        for (const Values& moment : moments) {
            ASSERT_EQ(valuesOf(rig), moment) << seed;
            model.redo();
        }
        rig.time.advance(20s);
        EXPECT_EQ(rig.differing(), none);
        EXPECT_EQ(rig.notice(), "");
    }
}

TEST(UndoTest, NotchesAndKeysOfOneControlWithinHalfASecondAreOneStep) {
    Rig rig;
    rig.goOnline();
    const int knob = 0;
    const int fader = 0;
    rig.model->history.beginGesture();
    rig.model->history.endGesture();
    const struct {
        const int* source;
        Duration pause;
        int steps;
    } cases[] = {{&knob, 500ms, 1}, {&knob, 501ms, 2}, {&fader, 0ms, 2}, {nullptr, 0ms, 2}};
    for (const auto& [source, pause, steps] : cases) {
        rig.model->history.clear();
        rig.model->history.burst(&knob);
        rig.model->set(3, gain(-1));
        rig.model->set(3, gain(-2));
        rig.time.advance(pause);
        rig.model->history.burst(source);
        rig.model->set(3, gain(-3));
        for (int undone = 0; undone < steps; ++undone) {
            EXPECT_NE(rig.shown(0, 3), gain(0));
            rig.model->undo();
        }
        EXPECT_EQ(rig.shown(0, 3), gain(0)) << pause.count();
    }
}

TEST(UndoTest, ARecallIsOneStepAndEndsInAReport) {
    Rig rig(chainOf(2));
    rig.goOnline();
    for (const std::uint8_t address : {1, 2}) {
        rig.model->target = address;
        rig.model->set(3, gain(-static_cast<float>(address)));
        rig.model->set(4, gain(-9));
        rig.run(rig.model->savePreset(4, "Show"));
    }
    rig.model->target = std::nullopt;
    rig.model->set(3, gain(5));
    const Values before = valuesOf(rig);
    const Sequence activities(rig.model->activity);
    rig.model->start(rig.model->loadPreset(4));
    rig.run(rig.model->loadPreset(4));  // a second click
    rig.time.advance(10s);
    EXPECT_EQ(rig.sentOf(Fun::presetLoad).size(), 2U);
    EXPECT_EQ(activities.values, (std::vector<std::optional<std::string>>{
                                     "Carregando o preset 4…", "Carregando o preset 4 na caixa 01…",
                                     "Carregando o preset 4 na caixa 02…", std::nullopt}));
    EXPECT_EQ(rig.model->report.value().text, "Preset 4 carregado em 2 caixas");
    EXPECT_EQ(rig.shown(1, 3), gain(-2));
    rig.model->undo();
    EXPECT_EQ(rig.model->report.value().text, "Desfeito: preset 4, 2 caixas");
    EXPECT_EQ(valuesOf(rig), before);
    rig.time.advance(10s);
    EXPECT_EQ(rig.differing(), none);
}

TEST(UndoTest, ALostLinkKeepsTheStepsAndADiscoveryEndsThem) {
    Rig rig;
    rig.goOnline();
    rig.model->set(3, gain(-7));
    rig.time.advance(100ms);
    const auto listed = rig.speaker(0);
    rig.cable.lock()->cut(nullptr);
    rig.time.advance(1s);
    rig.model->undo();
    EXPECT_EQ(rig.shown(0, 3), gain(0));
    rig.model->set(3, gain(-7));
    rig.goOnline();
    rig.model->set(3, gain(-5));
    rig.run(rig.model->discover(false));
    rig.model->undo();
    rig.time.advance(1s);
    EXPECT_EQ(rig.model->report.value().text, "Nada a desfazer");
    EXPECT_EQ(listed->values.value().at(3), gain(-7)) << "a speaker of an earlier list";
    rig.run(rig.model->disconnect());
    const std::vector<std::string> told{"Conectado a /dev/ttyUSB0",
                                        "Encontradas: caixa 01",
                                        "A conexão com as caixas caiu",
                                        "Conectado a /dev/ttyUSB0",
                                        "1 ajuste não foi enviado (caixa 01)",
                                        "Encontradas: caixa 01",
                                        "Encontradas: caixa 01",
                                        "Desconectado"};
    std::vector<std::string> events;
    for (const auto& event : rig.model->events.all())
        events.push_back(event.text);
    EXPECT_EQ(events, told);
}

TEST(LineReportTest, CountsAttemptsByAddressAndPutsFramesIntoWords) {
    auto options = chainOf(2);
    options.duplicate = options.noise = 1;
    Rig rig(options);
    rig.goOnline();
    rig.model->target = 2;
    rig.port->swallow = [](const Sent& sent) { return sent.is(Fun::moduleSet) && sent.address == 2; };
    const auto before = rig.model->lineReport().addresses;
    rig.model->set(17, {PeqValue{1000, 3, 1.5F, 0, false}});
    rig.time.advance(1500ms);
    const LineReport report = rig.model->lineReport();
    const auto& counts = report.addresses.at(2);
    const auto lost = [&](std::uint64_t LineRecord::Counts::*field) {
        return counts.*field - before.at(2).*field;
    };
    EXPECT_EQ(lost(&LineRecord::Counts::resent), 1U);
    EXPECT_EQ(lost(&LineRecord::Counts::timedOut), 2U);
    EXPECT_EQ(report.addresses.at(1).timedOut, 0U);
    EXPECT_GE(counts.median, 2ms);
    EXPECT_GE(counts.longest, counts.median);
    EXPECT_NEAR(counts.dropped, counts.sent - counts.timedOut, 1) << "the second of each reply";
    EXPECT_GT(report.droppedBytes, 0U);
    EXPECT_LT(report.droppedBytes, 100 * counts.sent);
    EXPECT_EQ(report.frames.size(), 200U);
    EXPECT_TRUE(std::ranges::is_sorted(report.frames, {}, &LineReport::Frame::at));
    const auto resent = std::ranges::find_if(report.frames, [](const auto& frame) {
        return frame.meaning == "ajuste: PEQ 3, SAÍDA 1: fc=1000 gain=3 q=1.5 type=0 bypass=0";
    });
    ASSERT_NE(resent, report.frames.end());
    EXPECT_TRUE(resent->sent && resent->address == 2);
}

}  // namespace
}  // namespace Tests
