// What the user sees is what the speakers hold, or a notice says that it is not.
#include "rig.hpp"

#include <map>

namespace Tests {
namespace {

// The level of both inputs of every board.
std::vector<ModuleValue> levels(const Rig& rig, std::size_t boards) {
    std::vector<ModuleValue> all;
    for (std::size_t board = 0; board < boards; ++board)
        for (const std::uint8_t module : {1, 2})
            all.push_back(rig.line->board(board).value(module));
    return all;
}

TEST(LeavingTest, SendsTheEditsThatWaitBeforeItDisconnects) {
    auto options = chainOf(16);
    options.pace = true;
    Rig rig(options);
    rig.goOnline();
    for (int move = 1; move <= 30; ++move) {
        rig.model->setVolume(-move);
        rig.time.advance(16ms);
    }
    const Sequence activities(rig.model->activity);
    rig.run(rig.model->leave());
    EXPECT_EQ(levels(rig, 16), std::vector<ModuleValue>(32, gain(-30)));
    EXPECT_EQ(rig.model->status.value(), Status::offline());
    EXPECT_EQ(activities.values,
              (std::vector<std::optional<std::string>>{"Enviando os últimos ajustes…", std::nullopt}));
    EXPECT_EQ(rig.notice(), "");
}

TEST(LeavingTest, EndsAfterThreeSecondsOrASecondCallAndTellsWhatIsUnsent) {
    for (const bool twice : {false, true}) {
        Rig rig(chainOf(3));
        rig.goOnline();
        rig.port->swallow = [](const Sent& sent) { return sent.address == 2; };
        rig.model->target = 2;
        rig.model->setVolume(-9);
        rig.model->set(3, gain(-9));
        rig.model->set(4, gain(-9));
        const TimePoint start = rig.time.now();
        rig.model->start(rig.model->leave());
        if (twice) rig.run(rig.model->leave());
        ASSERT_TRUE(rig.until([&] { return rig.model->status.value() == Status::offline(); }));
        EXPECT_LE(rig.time.now() - start, twice ? 0s : 3s + 10ms);
        rig.model->dropEdits();  // as the program does at its end
        rig.time.advance(10s);
        const std::string notice = std::string(twice ? "4" : "3") + " ajustes não foram enviados (caixa 02)";
        EXPECT_EQ(rig.notice(), notice);
        EXPECT_EQ(rig.model->unsent, (twice ? "" : "A caixa 02 não confirmou o ajuste; ") + notice);
        EXPECT_EQ(rig.port->holders, 0);
    }
}

TEST(HealingTest, ASpeakerThatWasNotReadIsCompletedBetweenTheMeters) {
    Rig rig(chainOf(2));
    rig.line->board(0).store(40, {PeqValue{777, -3, 2, 0, false}});
    rig.model->start(rig.model->connect());
    ASSERT_TRUE(rig.until([&] { return rig.model->progress.value() > 0.2; }));
    rig.line->mute(0);
    ASSERT_TRUE(rig.until([&] { return rig.model->status.value().isOnline(); }));
    rig.time.advance(20s);
    EXPECT_EQ(rig.sentOf(Fun::moduleGet).back().address, 1) << "the meters of the first";
    EXPECT_TRUE(rig.speaker(0)->values.value().empty());
    rig.line->unmute(0);
    rig.model->set(50, {PeqValue{1000, 1, 1, 0, false}}, Speakers{rig.speaker(0)});
    rig.time.advance(30s);
    EXPECT_EQ(rig.speaker(0)->values.value().size(), 92U);
    EXPECT_EQ(rig.differing(), none);
    EXPECT_EQ(rig.model->events.all().back().text, "A caixa 01 foi lida por completo");
    rig.port->sent.clear();
    rig.time.advance(10s);
    EXPECT_EQ(rig.sentOf(Fun::moduleGet).size(), rig.port->sent.size());
    EXPECT_TRUE(
        std::ranges::all_of(rig.port->sent, [](const Sent& sent) { return sent.module == K7Q::meterIndex; }));
}

TEST(HealingTest, ReadingAgainTakesOverWhatTheTargetedSpeakersHold) {
    Rig rig(chainOf(2));
    rig.goOnline();
    for (const std::size_t board : {0U, 1U})
        rig.line->board(board).store(3, gain(-20));
    rig.model->target = 2;
    rig.model->start(rig.model->readAgain());
    rig.time.advance(10ms);
    EXPECT_EQ(rig.model->activity.value(), "Lendo a caixa 02…");
    rig.model->set(4, gain(-1));
    rig.time.advance(5s);
    EXPECT_EQ(rig.shown(1, 3), gain(-20));
    EXPECT_EQ(rig.shown(1, 4), gain(-1));
    EXPECT_EQ(rig.shown(0, 3), gain(0)) << "not targeted";
    EXPECT_EQ(rig.model->report.value().text, "Lida: caixa 02");
}

TEST(StalledLineTest, AnAdapterThatTakesNoDataForThreeSecondsIsToldOnce) {
    for (const Duration stall : {2s, 5s}) {
        Rig rig;
        rig.goOnline();
        rig.port->swallow = [&](const Sent&) {
            rig.time.block(stall);
            return false;
        };
        rig.time.advance(1s);
        const std::string text = "O adaptador não aceita dados. Confira o cabo USB.";
        EXPECT_EQ(rig.notice(), stall > 3s ? text : "");
        const auto tells = [&](const auto& event) { return event.text == text; };
        EXPECT_EQ(std::ranges::count_if(rig.model->events.all(), tells), stall > 3s ? 1 : 0);
    }
}

TEST(HealingTest, SpeakersThatDoNotAnswerDoNotHoldUpTheOthers) {
    Rig rig(chainOf(8));
    rig.port->swallow = [](const Sent& sent) { return sent.is(Fun::moduleGet); };
    rig.run(rig.model->connect());
    rig.port->swallow = [](const Sent& sent) { return sent.address < 7 && sent.module != K7Q::meterIndex; };
    rig.time.advance(2min);
    for (const std::size_t last : {6U, 7U})
        EXPECT_EQ(rig.speaker(last)->values.value().size(), 92U);
}

// Edits that wait when a reading begins are sent during it: before or after their module was read.
TEST(ReadingTest, EditsThatWaitOrRepeatTheValueStayInTheWindow) {
    const std::function<Task<void>(Rig&)> readings[] = {
        [](Rig& rig) { return rig.model->readAgain(); },
        [](Rig& rig) { return rig.model->loadPreset(1); },
    };
    for (const auto& reading : readings) {
        Rig rig(chainOf(4));
        for (std::size_t board = 0; board < 4; ++board)
            rig.line->board(board).storePreset(1, "Casa");
        rig.goOnline();
        rig.model->setVolume(-9);
        rig.time.advance(1s);
        rig.model->start(reading(rig));
        for (int moment = 0; moment < 40; ++moment) {
            rig.time.advance(23ms);
            rig.model->setVolume(-9);
        }
        rig.time.advance(10s);
        EXPECT_EQ(rig.differing(), none);
    }
}

TEST(ReadingTest, ADiscoveryEndsAPresetRunAndAPresetWaitsForADiscovery) {
    Rig rig(chainOf(4));
    rig.line->board(3).storePreset(1, "Casa");
    rig.line->board(3).store(1, gain(-30));
    rig.goOnline();
    rig.model->start(rig.model->loadPreset(1));
    rig.time.advance(30ms);
    rig.run(rig.model->discover(false));
    EXPECT_EQ(rig.notice(), "A procura interrompeu: Carregando o preset 1 na caixa 01…");
    EXPECT_EQ(rig.line->board(3).value(1), gain(-30));
    rig.model->start(rig.model->discover(false));
    rig.time.advance(300ms);
    rig.run(rig.model->loadPreset(1));
    EXPECT_EQ(rig.shown(3, 1), gain(0));
    EXPECT_EQ(rig.differing(), none);
}

// A lost acknowledgement gives the next speaker the same address.
TEST(AddressingTest, OnABadLineAllSpeakersAreFoundOrTheUserIsTold) {
    int complete = 0;
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        auto options = chainOf(16);
        options.addressed = false;
        options.lose = 0.03;
        options.seed = seed;
        Rig rig(options);
        rig.run(rig.model->connect());
        std::map<std::uint8_t, int> addresses;
        for (std::size_t board = 0; board < 16; ++board)
            ++addresses[rig.line->board(board).address()];
        const bool isComplete = addresses.size() == 16 && rig.model->speakers.value().size() == 16;
        complete += isComplete ? 1 : 0;
        const auto& events = rig.model->events.all();
        const bool told = std::ranges::any_of(events, [](const auto& event) {
            return event.text.starts_with("O endereçamento não pôde") ||
                   event.text.starts_with("Nenhuma caixa");
        });
        EXPECT_TRUE(isComplete || told) << seed;
    }
    EXPECT_GE(complete, 24);
}

TEST(AddressingTest, OneThatCannotBeConfirmedIsRepeatedTwiceAndThenTold) {
    auto options = chainOf(3);
    options.addressed = false;
    Rig rig(options);
    int rounds = 0;
    int lost = 0;
    rig.port->swallow = [&](const Sent& sent) {
        if (sent.is(Fun::netStart)) ++rounds;
        if (sent.is(Fun::netAddressSet) && lost < rounds) return ++lost > 0;
        return sent.is(Fun::devInfo) && sent.address == 2;
    };
    rig.run(rig.model->connect());
    EXPECT_EQ(rounds, 3);
    EXPECT_EQ(rig.model->speakers.value().size(), 3U);
    EXPECT_EQ(rig.notice(),
              "O endereçamento não pôde ser confirmado. Confira os cabos e procure as caixas de novo.");
}

TEST(AddressingTest, ASpeakerThatWasPassedOverIsAddressedInASecondRound) {
    auto options = chainOf(3);
    options.addressed = false;
    Rig rig(options);
    int set = 0;
    int asked = 0;
    rig.port->swallow = [&](const Sent& sent) {
        if (sent.is(Fun::netAddressSet)) return ++set == 1;
        return sent.is(Fun::devInfo) && sent.address > 16 && (++asked == 3 || asked == 4);
    };
    rig.run(rig.model->connect());
    EXPECT_EQ(rig.model->speakers.value().size(), 3U);
    EXPECT_EQ(rig.sentOf(Fun::netStart).size(), 2U);
}

TEST(AddressingTest, TwoAtATimeRunOneAfterTheOther) {
    Rig rig(chainOf(5));
    rig.goOnline();
    rig.model->start(rig.model->discover(true));
    rig.time.advance(7ms);
    rig.run(rig.model->discover(true));
    for (std::size_t board = 0; board < 5; ++board)
        EXPECT_EQ(rig.line->board(board).address(), board + 1);
    EXPECT_EQ(rig.model->speakers.value().size(), 5U);
}

TEST(AddressingTest, AnAddressingWithoutAResendIsNotChecked) {
    auto options = chainOf(3);
    options.addressed = false;
    Rig rig(options);
    rig.run(rig.model->connect());
    EXPECT_EQ(rig.sentOf(Fun::devInfo).size(), 3U + 2U);
    rig.line->mute(2);
    rig.run(rig.model->discover(false));
    EXPECT_EQ(rig.notice(), "Antes respondiam 3 caixas, agora 2");
}

}  // namespace
}  // namespace Tests
