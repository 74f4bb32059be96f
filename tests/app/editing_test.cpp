#include "rig.hpp"

#include <random>

namespace Tests {
namespace {

TEST(EditingTest, OnlyTheNewestValueIsSentInThePlaceOfTheFirst) {
    Rig rig;
    rig.goOnline();
    for (const auto& [module, db] : {std::pair(4, -1), {3, -2}, {4, -3}, {4, -4}})
        rig.model->set(static_cast<std::uint8_t>(module), gain(static_cast<float>(db)));
    rig.time.advance(200ms);
    EXPECT_EQ(rig.written(), (std::vector<int>{4, 3}));
    EXPECT_EQ(rig.line->board(0).value(4), gain(-4));
    EXPECT_EQ(rig.line->board(0).value(3), gain(-2));
}

TEST(EditingTest, EditsAreSentWithoutAPauseBeforeTheMeters) {
    Rig rig;
    rig.goOnline();
    rig.time.advance(100ms);
    for (std::uint8_t module = 1; module <= 6; ++module)
        rig.model->set(module, gain(-1));
    rig.port->sent.clear();
    rig.time.advance(200ms);
    const auto first =
        std::ranges::find_if(rig.port->sent, [](auto& sent) { return sent.is(Fun::moduleSet); });
    ASSERT_GE(rig.port->sent.end() - first, 7);
    EXPECT_EQ(first[5].at - first->at, 5 * 2ms);
    EXPECT_TRUE(first[5].is(Fun::moduleSet));
    EXPECT_EQ(first[6].module, K7Q::meterIndex);
}

TEST(EditingTest, AValueThatComesWhileItsModuleIsOnTheWireIsSentAfterwards) {
    Rig rig;
    rig.goOnline();
    rig.model->set(3, gain(-1));
    ASSERT_TRUE(rig.until([&] { return !rig.written().empty(); }));
    rig.model->set(4, gain(-2));
    rig.model->set(3, gain(-3));
    rig.time.advance(100ms);
    EXPECT_EQ(rig.written(), (std::vector<int>{3, 4, 3}));
    EXPECT_EQ(rig.line->board(0).value(3), gain(-3));
}

TEST(EditingTest, EditsGoToTheTargetedSpeakers) {
    const struct {
        std::optional<std::uint8_t> target;
        std::vector<int> addresses;
    } cases[] = {{std::nullopt, {1, 2, 3}}, {2, {2}}, {9, {}}};
    for (const auto& expected : cases) {
        Rig rig(chainOf(3));
        rig.goOnline();
        rig.model->target = expected.target;
        rig.model->set(3, gain(-9));
        rig.time.advance(200ms);
        std::vector<int> addresses;
        for (const Sent& sent : rig.sentOf(Fun::moduleSet))
            addresses.push_back(sent.address);
        EXPECT_EQ(addresses, expected.addresses);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_EQ(rig.differing(i), std::vector<int>{});
    }
}

TEST(EditingTest, AnEditCarriesTheFocusedSpeakersOtherFieldsToAll) {
    Rig rig(chainOf(2));
    const auto compressor = [](std::string_view output) {
        return K7Q::index(ModuleKind::compressor, output, 0);
    };
    const DynamicsValue first{-10, 4, 1, 5, 100, 0};
    const DynamicsValue second{-30, 8, 1, 5, 100, 0};
    rig.line->board(0).store(compressor("Out2"), {first});
    rig.line->board(1).store(compressor("Out2"), {second});
    rig.goOnline();
    rig.model->output = 2;
    rig.model->editCompressor([](DynamicsValue& value) { value.ratio = 2; });
    rig.time.advance(200ms);
    EXPECT_EQ(rig.written(), (std::vector<int>{compressor("Out2"), compressor("Out2")}));
    for (std::size_t i = 0; i < 2; ++i)
        EXPECT_EQ(rig.line->board(i).value(compressor("Out2")),
                  ModuleValue{(DynamicsValue{-10, 2, 1, 5, 100, 0})});

    rig.port->sent.clear();
    rig.model->output = std::nullopt;
    rig.model->editLimiter([](LimiterValue& value) { value.threshold = -3; });
    rig.time.advance(200ms);
    EXPECT_EQ(rig.written().size(), 2 * 4U);
}

TEST(EditingTest, InputZeroDecidesTheMuteOfBoth) {
    Rig rig;
    rig.line->board(0).store(1, {GainValue{-6, true, true}});
    rig.goOnline();
    rig.model->toggleMute();
    EXPECT_EQ(rig.shown(0, 1), gain(-6));
    EXPECT_EQ(rig.shown(0, 2), gain(0));
    rig.model->toggleMute();
    EXPECT_EQ(rig.shown(0, 2), ModuleValue{(GainValue{0, true, true})});
}

TEST(EditingTest, ARefusedEditIsReportedOnceAndStaysOnTheScreen) {
    auto options = chainOf(2);
    options.refuse = 1;
    Rig rig(options);
    rig.goOnline();
    rig.model->target = 2;
    rig.model->set(3, gain(-5));
    rig.time.advance(5s);
    EXPECT_EQ(rig.notice(), "A caixa 02 não confirmou o ajuste");
    EXPECT_EQ(rig.written(), std::vector<int>{3}) << "not sent again";
    EXPECT_EQ(rig.shown(1, 3), gain(-5));
}

TEST(EditingTest, WithoutSpeakersEverythingIsADefault) {
    Rig rig;
    rig.model->setVolume(-3);
    rig.model->toggleMute();
    EXPECT_EQ(rig.model->valueAs<PeqValue>(ModuleKind::peq, "Out3", 9)->fc, 11639U);
    EXPECT_EQ(rig.model->value(ModuleKind::vu, "In0"), std::nullopt);
    EXPECT_EQ(rig.model->focus(), nullptr);
}

// While speakers are read, an edit counts; while they are looked for, it has none to go to.
TEST(EditingTest, EditsDuringADiscoveryLeaveBoardAndScreenAlike) {
    for (const bool reading : {false, true}) {
        Rig rig;
        rig.goOnline();
        rig.model->start(rig.model->discover(false));
        ASSERT_TRUE(rig.until([&] {
            return reading ? rig.model->progress.value() > 0.5 : rig.sentOf(Fun::linkStatus).size() == 3;
        }));
        rig.model->set(3, gain(-8));
        ASSERT_TRUE(rig.until([&] { return rig.model->status.value().isOnline(); }));
        rig.time.advance(1s);
        EXPECT_EQ(rig.differing(0), std::vector<int>{});
        EXPECT_EQ(rig.line->board(0).value(3), gain(reading ? -8 : 0));
    }
}

// A minute of a restless hand on a bad line: only edits that were reported may be missing.
TEST(EditingTest, AfterAMinuteOnABadLineTheBoardsHoldWhatTheScreenShows) {
    for (std::uint64_t seed = 1; seed <= 5; ++seed) {
        auto options = chainOf(3);
        options.pace = true;
        options.lose = options.corrupt = 0.02;
        options.seed = seed;
        Rig rig(options);
        while (!rig.model->status.value().isOnline())
            rig.run(rig.model->connect());
        std::mt19937_64 random(seed);
        std::size_t reports = 0;
        for (int edit = 0; edit < 3600; ++edit) {
            const double level = static_cast<double>(random() % 200) / 10 - 10;
            if (edit % 60 == 0) rig.model->target = static_cast<std::uint8_t>(1 + random() % 3);
            if (edit % 240 == 0) rig.model->target = std::nullopt;
            switch (random() % 4) {
            case 0:
                rig.model->setVolume(level);
                break;
            case 1:
                rig.model->setTone(toneBands.at(random() % toneBands.size()), level);
                break;
            case 2:
                rig.model->setRoute("In1", K7Q::outputs.at(random() % 4), level > 0);
                break;
            default:
                rig.model->editLimiter([level](LimiterValue& value) { value.threshold = float(level); });
            }
            rig.time.advance(edit + 1 < 3600 ? 16667us : 10s);
            if (rig.model->notice.value()) ++reports;
            rig.model->notice = std::nullopt;
        }
        std::size_t missing = 0;
        for (std::size_t i = 0; i < rig.model->speakers.value().size(); ++i)
            missing += rig.differing(i).size();
        EXPECT_LE(missing, reports) << "seed " << seed;
        EXPECT_EQ(rig.line->summary().faults, std::vector<std::string>{}) << "seed " << seed;
    }
}

}  // namespace
}  // namespace Tests
