#include "rig.hpp"

namespace Tests {
namespace {

using Names = std::map<int, std::string>;

// Edits the gains and saves them as a preset, on the targeted speakers.
void store(Rig& rig, int number, const std::string& name, float db) {
    for (std::uint8_t module = 1; module <= 6; ++module)
        rig.model->set(module, gain(db));
    rig.run(rig.model->savePreset(number, name));
}

TEST(PresetsTest, ListsTheSlotsThatTheFocusedSpeakerHasStored) {
    Rig rig(chainOf(2));
    rig.goOnline();
    store(rig, 0, "Zero", 0);
    store(rig, 1, "Um", -1);
    rig.model->target = 2;
    store(rig, 31, "Último", -2);
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Um"}, {31, "Último"}})) << "slot 0 is no preset";
    EXPECT_EQ(rig.model->currentPreset.value(), 31);
    rig.model->target = 1;
    rig.port->swallow = [](const Sent& sent) { return sent.is(Fun::presetName); };
    rig.run(rig.model->refreshPresets());
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Preset 1"}})) << "a name that does not come";
    rig.model->target = 2;
    rig.port->swallow = [](const Sent& sent) { return sent.is(Fun::presetInfoGet); };
    rig.run(rig.model->refreshPresets());
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Preset 1"}})) << "no list comes";
    EXPECT_EQ(rig.model->notice.value(), std::nullopt);
}

TEST(PresetsTest, SavesLoadsAndDeletesOnAllTargetedSpeakersAfterTheEditsThatWait) {
    Rig rig(chainOf(3));
    rig.goOnline();
    const auto failing = [&rig](Fun fun) {
        rig.port->swallow = [fun](const Sent& sent) { return sent.address == 2 && sent.is(fun); };
    };
    failing(Fun::presetSave);
    store(rig, 4, "Show", -6);
    EXPECT_EQ(rig.notice(), "A caixa 02 não salvou o preset 4");
    EXPECT_EQ(rig.model->devicePresets.value(), (Names{{4, "Show"}}));
    for (std::size_t board = 0; board < 3; ++board)
        EXPECT_EQ(rig.line->board(board).preset(4).has_value(), board != 1);

    failing(Fun::presetLoad);
    rig.model->currentPreset = std::nullopt;
    for (std::uint8_t module = 1; module <= 6; ++module)
        rig.model->set(module, gain(0));
    rig.model->set(92, {DelayValue{std::numeric_limits<float>::quiet_NaN(), false}});
    rig.run(rig.model->loadPreset(4));
    rig.time.advance(1s);
    EXPECT_EQ(rig.notice(), "A caixa 02 não carregou o preset 4");
    EXPECT_EQ(rig.model->currentPreset.value(), 4);
    EXPECT_EQ(rig.shown(0, 6), gain(-6));
    EXPECT_EQ(rig.shown(1, 6), gain(0));
    EXPECT_EQ(rig.shown(2, 6), gain(-6));
    EXPECT_EQ(rig.differing(), none);

    failing(Fun::presetDelete);
    rig.model->notice = std::nullopt;
    rig.run(rig.model->deletePreset(4));
    EXPECT_FALSE(rig.line->board(2).preset(4));
    EXPECT_EQ(rig.model->devicePresets.value(), Names{});
    EXPECT_EQ(rig.model->notice.value(), std::nullopt) << "a deletion that fails is not reported";
}

TEST(PresetsTest, OfTwoListingsTheLaterOneRules) {
    Rig rig(chainOf(2));
    rig.goOnline();
    rig.model->target = 1;
    for (int slot = 1; slot <= 6; ++slot)
        store(rig, slot, "Da primeira", 0);
    rig.port->sent.clear();
    rig.model->start(rig.model->refreshPresets());
    ASSERT_TRUE(rig.until([&] { return !rig.sentOf(Fun::presetName).empty(); }));
    rig.model->target = 2;
    rig.run(rig.model->refreshPresets());
    rig.time.advance(1s);
    EXPECT_EQ(rig.model->devicePresets.value(), Names{});
}

TEST(PresetsTest, AnOperationWhoseLinkEndsChangesNothingAndReportsNothing) {
    const struct {
        std::function<Task<void>(AppModel&)> operation;
        int shortest;  // number of functions that it takes
    } operations[] = {
        {[](AppModel& model) { return model.refreshPresets(); }, 8},
        {[](AppModel& model) { return model.loadPreset(1); }, 480},
        {[](AppModel& model) { return model.savePreset(1, "Um"); }, 12},
        {[](AppModel& model) { return model.deletePreset(2); }, 12},
    };
    for (const auto& [operation, shortest] : operations)
        for (int moment = 0; moment < 2 * shortest; moment += moment < 120 ? 1 : 23) {
            Rig rig;
            rig.goOnline();
            store(rig, 1, "Um", 0);
            rig.model->currentPreset = 9;
            const auto running = spawn(rig.time.executor(), operation(*rig.model));
            rig.steps(moment / 2);
            if (moment % 2 == 0)
                rig.cable.lock()->cut(nullptr);
            else
                rig.model->start(rig.model->disconnect());
            rig.time.advance(20s);
            EXPECT_TRUE(running.isDone()) << moment;
            EXPECT_EQ(rig.model->devicePresets.value(), (Names{{1, "Um"}}));
            EXPECT_EQ(rig.model->currentPreset.value(), 9) << moment << " of " << shortest;
            EXPECT_EQ(rig.model->notice.value(), std::nullopt);
        }
}

}  // namespace
}  // namespace Tests
