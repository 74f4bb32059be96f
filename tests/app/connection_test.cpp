#include "rig.hpp"

namespace Tests {
namespace {

const Status noSpeaker = Status::error("Nenhuma caixa respondeu. Confira o cabo no \"From PC\".");

TEST(PortsTest, OffersTheExtraPortFirstAndChoosesWhatIsThere) {
    using List = std::vector<std::string>;
    const struct {
        List serial;
        std::string extra;
        std::string chosen;
        List offered;
        std::string choice;
    } cases[] = {
        {{}, "", "", {}, "esp"},
        {{"/dev/a", "/dev/b"}, "", "", {"/dev/a", "/dev/b"}, "/dev/a"},
        {{"/dev/a", "/dev/b"}, "/dev/b", "", {"/dev/a", "/dev/b"}, "/dev/a"},
        {{"/dev/a"}, "/tmp/x", "", {"/tmp/x", "/dev/a"}, "/tmp/x"},
        {{"/dev/a", "/dev/b"}, "", "/dev/b", {"/dev/a", "/dev/b"}, "/dev/b"},
        {{"/dev/a"}, "", "/dev/gone", {"/dev/a"}, "/dev/a"},
        {{"/dev/a"}, "", "esp", {"/dev/a"}, "esp"},
    };
    for (const auto& expected : cases) {
        List serial;
        const auto model = std::make_shared<AppModel>(
            Surroundings{nullptr, [&serial] { return serial; }, expected.extra, nullptr, nullptr});
        serial = expected.serial;
        model->portChoice = expected.chosen;
        model->refreshPorts();
        EXPECT_EQ(model->ports.value(), expected.offered);
        EXPECT_EQ(model->portChoice.value(), expected.choice);
    }
}

TEST(ConnectionTest, ChoosesTheBridgeOrThePort) {
    for (const auto& [choice, label] :
         {std::pair("esp", "192.168.4.18899"), {"/dev/ttyUSB0", "/dev/ttyUSB0"}}) {
        Rig rig;
        rig.model->portChoice = choice;
        rig.goOnline();
        EXPECT_EQ(rig.model->status.value(), Status::online(label));
    }
}

TEST(ConnectionTest, FindsTheSpeakersAndReadsThemAll) {
    for (const bool addressed : {true, false}) {
        auto options = chainOf(3);
        options.addressed = addressed;
        Rig rig(options);
        for (std::size_t i = 0; i < 3; ++i)
            rig.line->board(i).store(3, gain(static_cast<float>(i)));
        const History statuses(rig.model->status);
        const History fractions(rig.model->progress);

        rig.goOnline();

        std::vector<Status> expected{Status::working("Conectando a /dev/ttyUSB0…"),
                                     Status::working("Procurando caixas…")};
        if (!addressed) expected.push_back(Status::working("Endereçando as caixas…"));
        for (const char* const address : {"01", "02", "03"})
            expected.push_back(Status::working(std::string("Lendo a caixa ") + address + "…"));
        expected.push_back(Status::online("/dev/ttyUSB0"));
        EXPECT_EQ(statuses.values, expected);
        ASSERT_EQ(fractions.values.size(), 3 * 92 + 1U);
        EXPECT_FALSE(fractions.values.back());
        EXPECT_DOUBLE_EQ(*fractions.values.at(91), 1 / 3.0);
        EXPECT_TRUE(std::is_sorted(fractions.values.begin(), fractions.values.end() - 1));
        ASSERT_EQ(rig.model->speakers.value().size(), 3U);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(rig.speaker(i)->address, i + 1);
            EXPECT_EQ(rig.speaker(i)->values.value().size(), 92U);
            EXPECT_EQ(rig.differing(i), std::vector<int>{});
        }
        EXPECT_EQ(rig.line->summary().faults, std::vector<std::string>{});
    }
}

TEST(ConnectionTest, RenumberingAsksNobodyForAnAddress) {
    Rig rig(chainOf(2));
    rig.goOnline();
    rig.model->target = 2;
    rig.run(rig.model->discover(true));
    EXPECT_TRUE(rig.sentOf(Fun::linkStatus).empty());
    EXPECT_EQ(rig.sentOf(Fun::netAddressSet).size(), 2U);
    EXPECT_TRUE(rig.model->status.value().isOnline());
    EXPECT_EQ(rig.model->target.value(), 2);

    rig.line->mute(1);
    rig.run(rig.model->discover(false));
    EXPECT_EQ(rig.model->target.value(), std::nullopt) << "that speaker is gone";
}

TEST(ConnectionTest, NobodyAnswering) {
    Rig rig;
    rig.goOnline();
    rig.line->mute(0);
    rig.run(rig.model->discover(false));
    EXPECT_EQ(rig.model->status.value(), noSpeaker);
    EXPECT_EQ(rig.model->speakers.value().size(), 1U) << "the last state stays on the screen";

    rig.run(rig.model->connect());
    EXPECT_EQ(rig.model->status.value(), noSpeaker);
    EXPECT_TRUE(rig.model->speakers.value().empty());
}

TEST(ConnectionTest, APortThatDoesNotOpenSaysWhy) {
    Rig rig;
    rig.port->refusal = TransportError::open("/dev/ttyUSB0", EACCES);
    rig.run(rig.model->connect());
    EXPECT_EQ(rig.model->status.value(), Status::error(rig.port->refusal->description()));
    rig.run(rig.model->discover(false));
    EXPECT_TRUE(rig.port->sent.empty()) << "there is no link to discover on";

    rig.port->refusal.reset();
    rig.goOnline();
}

TEST(ConnectionTest, ASpeakerThatFallsSilentWhileItIsReadKeepsNoValues) {
    Rig rig(chainOf(2));
    rig.model->start(rig.model->connect());
    ASSERT_TRUE(rig.until([&] { return rig.model->progress.value() > 0.2; }));
    rig.line->mute(0);
    ASSERT_TRUE(rig.until([&] { return rig.model->status.value().isOnline(); }));
    EXPECT_EQ(rig.notice(), "A caixa 01 não respondeu a todas as leituras");
    EXPECT_TRUE(rig.speaker(0)->values.value().empty());
    EXPECT_EQ(rig.speaker(1)->values.value().size(), 92U);
    EXPECT_EQ(rig.model->progress.value(), std::nullopt);
}

TEST(ConnectionTest, ALostLinkKeepsWhatWasShown) {
    const auto unplugged = TransportError::open("/dev/ttyUSB0", EIO);
    const struct {
        std::exception_ptr error;
        std::string text;
    } cases[] = {
        {nullptr, "A conexão com as caixas caiu"},
        {std::make_exception_ptr(unplugged), unplugged.description()},
    };
    for (const auto& lost : cases) {
        Rig rig;
        rig.goOnline();
        rig.cable.lock()->cut(lost.error);
        rig.time.advance(1s);
        EXPECT_EQ(rig.model->status.value(), Status::error(lost.text));
        EXPECT_EQ(rig.model->speakers.value().size(), 1U);

        rig.model->set(3, gain(-7));
        rig.time.advance(1s);
        EXPECT_EQ(rig.shown(0, 3), gain(-7)) << "the hand is followed";
        rig.goOnline();
        rig.time.advance(1s);
        EXPECT_EQ(rig.written(), std::vector<int>{}) << "but nothing of it comes after";
        EXPECT_EQ(rig.differing(0), std::vector<int>{});

        rig.run(rig.model->disconnect());
        EXPECT_EQ(rig.model->status.value(), Status::offline());
        EXPECT_TRUE(rig.model->speakers.value().empty());
    }
}

TEST(ConnectionTest, OfTwoDiscoveriesTheLaterOneRules) {
    for (const int lead : {1, 20, 400, 900}) {
        Rig rig(chainOf(2));
        rig.goOnline();
        rig.model->start(rig.model->discover(false));
        rig.steps(lead);
        rig.run(rig.model->discover(true));
        const auto speakers = rig.model->speakers.value();
        EXPECT_TRUE(rig.model->status.value().isOnline());
        rig.port->sent.clear();
        rig.time.advance(620ms);
        EXPECT_LE(rig.port->sent.size(), 11U) << "one live loop, a meter reading every 62 ms";
        EXPECT_EQ(rig.model->speakers.value(), speakers);
        EXPECT_EQ(rig.model->progress.value(), std::nullopt);
    }
}

}  // namespace
}  // namespace Tests
