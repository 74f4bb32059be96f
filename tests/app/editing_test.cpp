#include "rig.hpp"

namespace Tests {
namespace {

TEST(EditingTest, TheNewestUnsentValueOfAModuleIsSentInThePlaceOfTheFirstAndBeforeTheMeters) {
    Rig rig;
    rig.goOnline();
    const auto set = [&rig](std::uint8_t module, float db) { rig.model->set(module, gain(db)); };
    set(4, -1);
    set(3, -2);
    set(4, -3);
    ASSERT_TRUE(rig.until([&] { return !rig.written().empty(); }));
    set(5, -4);
    set(4, -5);  // the first value is on the wire
    set(3, -6);
    rig.port->sent.clear();
    rig.time.advance(100ms);
    EXPECT_EQ(rig.written(), (std::vector<int>{3, 5, 4}));
    EXPECT_EQ(rig.differing(), none);
    EXPECT_EQ(rig.shown(0, 3), gain(-6));
    EXPECT_EQ(rig.port->sent.at(2).at - rig.port->sent.at(0).at, 2 * 2ms) << "no pause between edits";
    EXPECT_EQ(rig.port->sent.at(3).module, K7Q::meterIndex);
}

TEST(EditingTest, EditsGoToTheTargetedSpeakersOrToThoseThatTheCallNames) {
    Rig rig(chainOf(3));
    rig.goOnline();
    const Speakers all = rig.model->speakers.value();
    const struct {
        std::optional<std::uint8_t> target;
        std::optional<Speakers> on;
        std::vector<int> addresses;
    } cases[] = {
        {std::nullopt, std::nullopt, {1, 2, 3}}, {2, std::nullopt, {2}}, {9, std::nullopt, {}},
        {2, Speakers{all[2], all[0]}, {3, 1}},   {2, Speakers{}, {}},
    };
    for (const auto& [target, on, expected] : cases) {
        rig.model->target = target;
        rig.port->sent.clear();
        rig.model->set(3, gain(-9), on);
        rig.time.advance(200ms);
        std::vector<int> addresses;
        for (const Sent& sent : rig.sentOf(Fun::moduleSet))
            addresses.push_back(sent.address);
        EXPECT_EQ(addresses, expected);
        EXPECT_EQ(rig.differing(), none);
    }
}

TEST(EditingTest, AnEditOfOneOrAllOutputsCopiesTheOtherFieldsOfTheFocusedSpeaker) {
    for (const std::optional<int> output : {std::optional<int>(), std::optional(2)}) {
        Rig rig(chainOf(2));
        std::vector<int> modules;
        for (const ModuleKind kind : {ModuleKind::compressor, ModuleKind::limiter})
            for (const std::string_view channel : K7Q::outputs)
                if (!output || channel == "Out2")
                    modules.insert(modules.end(), 2, K7Q::index(kind, channel, 0));
        const std::uint8_t compressor = K7Q::index(ModuleKind::compressor, "Out2", 0);
        const std::uint8_t limiter = K7Q::index(ModuleKind::limiter, "Out2", 0);
        rig.line->board(0).store(compressor, {DynamicsValue{-10, 4, 1, 5, 100, 0}});
        rig.line->board(0).store(limiter, {LimiterValue{-10, 4, 1, 100, 0}});
        rig.goOnline();
        rig.model->output = output;
        rig.model->editCompressor([](DynamicsValue& value) { value.ratio = 2; });
        rig.model->editLimiter([](LimiterValue& value) { value.threshold = -3; });
        rig.time.advance(200ms);
        EXPECT_EQ(rig.written(), modules);
        EXPECT_EQ(rig.line->board(1).value(compressor), ModuleValue{(DynamicsValue{-10, 2, 1, 5, 100, 0})});
        EXPECT_EQ(rig.line->board(1).value(limiter), ModuleValue{(LimiterValue{-3, 4, 1, 100, 0})});
    }
}

TEST(EditingTest, AnEditThatIsNotConfirmedIsReportedAlsoWhenADiscoveryFollows) {
    for (const bool rediscovered : {false, true}) {
        Rig rig(chainOf(2));
        rig.goOnline();
        rig.model->target = 2;
        rig.port->swallow = [](const Sent& sent) { return sent.is(Fun::moduleSet); };
        rig.model->set(3, gain(-5));
        ASSERT_TRUE(rig.until([&] { return !rig.written().empty(); }));
        if (rediscovered) rig.run(rig.model->discover(false));
        rig.time.advance(5s);
        EXPECT_EQ(rig.notice(), "A caixa 02 não confirmou o ajuste");
        EXPECT_EQ(rig.written(), (std::vector<int>{3, 3})) << "one resend";
        EXPECT_EQ(rig.model->value(ModuleKind::gain, "Out0"), gain(rediscovered ? 0 : -5));
    }
}

// While speakers are looked for, an edit has no speaker to go to.
TEST(EditingTest, AnEditWhileASpeakerIsReadOutlivesTheReading) {
    const struct {
        std::function<Task<void>(AppModel&)> reading;
        std::size_t moment;  // number of frames sent
        float outcome;
    } cases[] = {
        {[](AppModel& model) { return model.discover(false); }, 3, -1},
        {[](AppModel& model) { return model.discover(false); }, 60, -9},
        {[](AppModel& model) { return model.loadPreset(1); }, 60, -9},
    };
    for (const auto& [reading, moment, outcome] : cases) {
        Rig rig;
        rig.goOnline();
        rig.model->set(3, gain(-1));
        rig.run(rig.model->savePreset(1, "Um"));
        rig.port->sent.clear();
        rig.model->start(reading(*rig.model));
        ASSERT_TRUE(rig.until([&rig, moment = moment] { return rig.port->sent.size() > moment; }));
        rig.model->set(3, gain(-9));
        rig.model->set(92, {DelayValue{5, false}});
        rig.time.advance(20s);
        EXPECT_EQ(rig.shown(0, 3), gain(outcome));
        EXPECT_EQ(rig.differing(), none);
    }
}

TEST(EditingTest, OnABadLineOnlyEditsThatWereReportedAreMissing) {
    auto options = chainOf(3);
    options.pace = true;
    options.lose = options.corrupt = 0.02;
    Rig rig(options);
    while (!rig.model->status.value().isOnline())
        rig.run(rig.model->connect());
    std::size_t reports = 0;
    for (int edit = 0; edit < 18000; ++edit) {
        rig.model->target = std::uint8_t(1 + edit / 60 % 3);
        if (edit % 240 < 60) rig.model->target = std::nullopt;
        rig.model->setTone(toneBands.at(std::size_t(edit % 3)), edit % 19 - 9);
        rig.time.advance(edit + 1 < 18000 ? 16667us : 10s);
        if (rig.model->notice.value()) ++reports;
        rig.model->notice = std::nullopt;
    }
    EXPECT_GT(reports, 0U);
    EXPECT_LE(rig.differing().size(), reports);
    EXPECT_EQ(rig.line->summary().faults, std::vector<std::string>{});
}

}  // namespace
}  // namespace Tests
