#include "rig.hpp"

namespace Tests {
namespace {

using Names = std::map<int, std::string>;

// Presets as someone has stored them before: on each board slot `number`, with output 0 at `db`.
void storeEverywhere(Rig& rig, int number, const std::string& name, float db) {
    rig.model->set(3, gain(db));
    rig.time.advance(300ms);
    rig.run(rig.model->savePreset(number, name));
}

TEST(PresetsTest, ListsWhatTheFocusedSpeakerHasStored) {
    Rig rig(chainOf(2));
    rig.goOnline();
    storeEverywhere(rig, 0, "Zero", 0);
    storeEverywhere(rig, 1, "Um", -1);
    rig.model->target = 2;
    storeEverywhere(rig, 31, "Último", -2);
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Um"}, {31, "Último"}})) << "slot 0 is no preset";
    rig.model->target = 1;
    rig.run(rig.model->refreshPresets());
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Um"}}));

    rig.port->swallow = [](const Sent& sent) { return sent.is(Fun::presetName); };
    rig.run(rig.model->refreshPresets());
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Preset 1"}})) << "a name that does not come";

    rig.port->swallow = [](const Sent& sent) { return sent.is(Fun::presetInfoGet); };
    rig.run(rig.model->refreshPresets());
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Preset 1"}}));
    EXPECT_EQ(rig.model->notice.value(), std::nullopt);
}

TEST(PresetsTest, LoadsOnAllTargetedSpeakersAndShowsWhatTheyHoldThen) {
    Rig rig(chainOf(3));
    rig.goOnline();
    storeEverywhere(rig, 4, "Show", -6);
    rig.model->set(3, gain(0));
    rig.time.advance(300ms);
    rig.port->swallow = [](const Sent& sent) { return sent.address == 2 && sent.is(Fun::presetLoad); };
    rig.run(rig.model->loadPreset(4));
    EXPECT_EQ(rig.notice(), "A caixa 02 não carregou o preset 4");
    EXPECT_EQ(rig.model->currentPreset.value(), 4);
    EXPECT_EQ(rig.shown(0, 3), gain(-6));
    EXPECT_EQ(rig.shown(1, 3), gain(0));
    EXPECT_EQ(rig.shown(2, 3), gain(-6)) << "the next speaker is asked all the same";
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(rig.differing(i), std::vector<int>{});
}

TEST(PresetsTest, SavesAndDeletesOnAllTargetedSpeakers) {
    Rig rig(chainOf(2));
    rig.goOnline();
    rig.port->swallow = [](const Sent& sent) { return sent.address == 2 && sent.is(Fun::presetSave); };
    rig.run(rig.model->savePreset(7, "Ensaio"));
    EXPECT_EQ(rig.notice(), "A caixa 02 não salvou o preset 7");
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{7, "Ensaio"}}));
    rig.port->swallow = nullptr;
    rig.run(rig.model->savePreset(7, "Ensaio"));
    EXPECT_TRUE(rig.line->board(1).preset(7));

    rig.model->notice = std::nullopt;
    rig.line->mute(1);
    rig.run(rig.model->deletePreset(7));
    EXPECT_FALSE(rig.line->board(0).preset(7));
    EXPECT_EQ(rig.model->devicePresets.value(), Names{});
    EXPECT_EQ(rig.model->notice.value(), std::nullopt) << "a deletion that fails is no news";
}

TEST(PresetsTest, WhatIsOnTheScreenIsWhatIsStoredAndLoaded) {
    Rig rig(chainOf(2));
    rig.goOnline();
    for (const std::uint8_t module : {1, 2, 3, 4, 5, 6})
        rig.model->set(module, gain(-7));
    rig.run(rig.model->savePreset(3, "Culto"));
    for (std::size_t board = 0; board < 2; ++board)
        for (const std::uint8_t module : {1, 2, 3, 4, 5, 6})
            EXPECT_EQ(rig.line->board(board).preset(3)->settings.at(module), gain(-7).encoded());

    // And what is loaded is what is on the screen.
    for (const std::uint8_t module : {1, 2, 3, 4, 5, 6})
        rig.model->set(module, gain(2));
    rig.run(rig.model->loadPreset(3));
    rig.time.advance(1s);
    for (std::size_t board = 0; board < 2; ++board) {
        EXPECT_EQ(rig.shown(board, 4), gain(-7));
        EXPECT_EQ(rig.differing(board), std::vector<int>{});
    }
}

TEST(PresetsTest, AnEditDuringARecallOutlivesIt) {
    Rig rig;
    rig.goOnline();
    storeEverywhere(rig, 1, "Um", -1);
    rig.port->sent.clear();
    rig.model->start(rig.model->loadPreset(1));
    ASSERT_TRUE(rig.until([&] { return rig.port->sent.size() > 60; }));
    rig.model->set(3, gain(-9));
    rig.model->set(92, {DelayValue{5, false}});
    rig.time.advance(2s);
    EXPECT_EQ(rig.shown(0, 3), gain(-9));
    EXPECT_EQ(rig.differing(0), std::vector<int>{});
}

TEST(PresetsTest, OfTwoListingsTheLaterOneRules) {
    Rig rig(chainOf(2));
    rig.goOnline();
    for (int slot = 1; slot <= 6; ++slot)
        storeEverywhere(rig, slot, "De todas", 0);
    rig.model->target = 2;
    for (int slot = 2; slot <= 6; ++slot)
        rig.run(rig.model->deletePreset(slot));
    rig.model->target = 1;
    rig.model->start(rig.model->refreshPresets());
    rig.steps(30);
    rig.model->target = 2;
    rig.run(rig.model->refreshPresets());
    rig.time.advance(1s);
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "De todas"}})) << "those of the focused speaker";
}

using Operation = std::function<Task<void>(AppModel&)>;

// Starts the run on a speaker with preset 1 stored and interrupts it after so many pieces of work.
// False when it was complete by then.
bool interrupted(const Operation& run, const std::function<void(Rig&)>& interrupt, int moment) {
    Rig rig;
    rig.goOnline();
    storeEverywhere(rig, 1, "Um", 0);
    rig.run(rig.model->loadPreset(1));
    rig.model->currentPreset = 9;
    const auto running = spawn(rig.time.executor(), run(*rig.model));
    rig.steps(moment);
    if (running.isDone()) return false;
    interrupt(rig);
    rig.time.advance(20s);
    EXPECT_TRUE(running.isDone());
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Um"}}));
    EXPECT_EQ(rig.model->notice.value(), std::nullopt);
    return rig.model->currentPreset.value() == 9;
}

TEST(PresetsTest, ARunWhoseLinkHasGoneEndsSilently) {
    const struct {
        Operation run;
        int pieces;  // of work, that it takes at least
    } runs[] = {
        {[](AppModel& model) { return model.refreshPresets(); }, 10},
        {[](AppModel& model) { return model.loadPreset(1); }, 480},
        {[](AppModel& model) { return model.savePreset(1, "Um"); }, 16},
        {[](AppModel& model) { return model.deletePreset(2); }, 16},
    };
    const std::function<void(Rig&)> interruptions[] = {
        [](Rig& rig) { rig.cable.lock()->cut(nullptr); },
        [](Rig& rig) { rig.model->start(rig.model->disconnect()); },
    };
    for (const auto& [run, pieces] : runs)
        for (const auto& interrupt : interruptions)
            for (int moment = 0; moment < pieces; moment += moment < 60 ? 1 : 23)
                EXPECT_TRUE(interrupted(run, interrupt, moment)) << moment << " of " << pieces;
}

TEST(PresetsTest, WithoutALinkNothingHappens) {
    Rig rig;
    rig.run(rig.model->refreshPresets());
    rig.run(rig.model->loadPreset(1));
    rig.run(rig.model->savePreset(1, ""));
    rig.run(rig.model->deletePreset(1));
    EXPECT_EQ(rig.model->currentPreset.value(), std::nullopt);
    EXPECT_TRUE(rig.port->sent.empty());
}

}  // namespace
}  // namespace Tests
