#include "rig.hpp"

#include "Wendril/text.hpp"

namespace Tests {
namespace {

TEST(PortsTest, OffersTheExtraPortFirstAndKeepsAChoiceThatIsStillOffered) {
    using List = std::vector<std::string>;
    const struct {
        List serial;
        std::string extra, chosen;
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
    for (const auto& [serial, extra, chosen, offered, choice] : cases) {
        AppModel model({nullptr, [serial = serial] { return serial; }, extra, nullptr, nullptr});
        EXPECT_EQ(model.ports.value(), offered);
        model.portChoice = chosen;
        model.refreshPorts();
        EXPECT_EQ(model.portChoice.value(), choice);
    }
}

TEST(PortsTest, AnAdapterThatIsPluggedInAgainIsChosenAgainUnlessAnotherWasChosenMeanwhile) {
    using List = std::vector<std::string>;
    for (const bool choosesAnother : {false, true}) {
        List serial{"/dev/a", "/dev/b"};
        AppModel model({.executor = nullptr,
                        .serialPorts = [&serial] { return serial; },
                        .extraPort = "",
                        .serial = nullptr,
                        .bridge = nullptr,
                        .stablePortName =
                            [](const std::string& path) {
                                return path == "/dev/b" || path == "/dev/c" ? "by-id" : path;
                            }});
        model.portChoice = "/dev/b";
        serial = {"/dev/a"};
        model.refreshPorts();
        EXPECT_EQ(model.portChoice.value(), "/dev/a");
        if (choosesAnother) model.portChoice = "esp";
        serial = {"/dev/a", "/dev/c"};
        model.refreshPorts();
        EXPECT_EQ(model.portChoice.value(), choosesAnother ? "esp" : "/dev/c");
    }
}

TEST(ConnectionTest, FindsOrAddressesUpToSixteenSpeakersAndReadsThemAll) {
    for (const auto& [boards, addressed] : {std::pair(1U, true), {3U, false}, {17U, true}, {17U, false}}) {
        auto options = chainOf(boards);
        options.addressed = addressed;
        Rig rig(options);
        for (unsigned i = 0; i < boards; ++i)
            rig.line->board(i).store(3, gain(static_cast<float>(i)));
        const std::string link = boards == 1 ? "192.168.4.1:8899" : "/dev/ttyUSB0";
        if (boards == 1) rig.model->portChoice = "esp";
        const Sequence statuses(rig.model->status);
        const Sequence fractions(rig.model->progress);

        rig.goOnline();

        const unsigned found = std::min(boards, 16U);
        std::vector<Status> expected{Status::working("Conectando a " + link + "…"),
                                     Status::working("Procurando caixas…")};
        if (!addressed) expected.push_back(Status::working("Endereçando as caixas…"));
        ASSERT_EQ(rig.model->speakers.value().size(), found);
        for (unsigned i = 0; i < found; ++i) {
            const auto address = static_cast<std::uint8_t>(i + 1);
            expected.push_back(Status::working("Lendo a caixa " + twoDigits(address) + "…"));
            EXPECT_EQ(rig.speaker(i)->address, address);
            EXPECT_EQ(rig.speaker(i)->values.value().size(), 92U);
        }
        expected.push_back(Status::online(link));
        EXPECT_EQ(statuses.values, expected);
        EXPECT_EQ(rig.differing(), none);
        ASSERT_EQ(fractions.values.size(), found * 92 + 1);
        EXPECT_FALSE(fractions.values.back());
        EXPECT_DOUBLE_EQ(*fractions.values.at(91), 1.0 / found);
        EXPECT_TRUE(std::is_sorted(fractions.values.begin(), fractions.values.end() - 1));
        EXPECT_EQ(rig.line->summary().faults, std::vector<std::string>{});
    }
}

TEST(ConnectionTest, ANewDiscoveryKeepsATargetThatIsStillThereAndTheSpeakersWhenNobodyAnswers) {
    const Status noSpeaker = Status::error("Nenhuma caixa respondeu. Confira o cabo no \"From PC\".");
    Rig rig(chainOf(2));
    rig.goOnline();
    rig.model->target = 2;
    rig.run(rig.model->discover(true));
    EXPECT_TRUE(rig.sentOf(Fun::linkStatus).empty()) << "renumbering does not scan";
    EXPECT_EQ(rig.sentOf(Fun::netAddressSet).size(), 2U);
    EXPECT_EQ(rig.model->target.value(), 2);
    rig.line->mute(1);
    rig.run(rig.model->discover(false));
    EXPECT_EQ(rig.model->target.value(), std::nullopt);

    rig.line->mute(0);
    rig.run(rig.model->discover(false));
    EXPECT_EQ(rig.model->status.value(), noSpeaker);
    EXPECT_EQ(rig.model->speakers.value().size(), 1U);
    rig.model->set(3, gain(-1));
    rig.run(rig.model->savePreset(1, "Show"));  // does not wait for an edit that nothing sends
    rig.run(rig.model->connect());
    EXPECT_EQ(rig.model->status.value(), noSpeaker);
    EXPECT_TRUE(rig.model->speakers.value().empty());
}

TEST(ConnectionTest, APortThatDoesNotOpenSaysWhyAndLeavesNoLink) {
    Rig rig;
    rig.port->refusal = TransportError::open("/dev/ttyUSB0", EACCES);
    rig.run(rig.model->connect());
    EXPECT_EQ(rig.model->status.value(), Status::error(rig.port->refusal->description()));
    rig.run(rig.model->discover(false));
    rig.run(rig.model->refreshPresets());
    rig.run(rig.model->loadPreset(1));
    rig.run(rig.model->savePreset(1, ""));
    rig.run(rig.model->deletePreset(1));
    EXPECT_EQ(rig.model->currentPreset.value(), std::nullopt);
    EXPECT_TRUE(rig.cable.expired());
    EXPECT_TRUE(rig.port->sent.empty());

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
}

TEST(ConnectionTest, ALostLinkKeepsTheSpeakersAndSendsNoEditAfterwards) {
    const auto unplugged = TransportError::open("/dev/ttyUSB0", EIO);
    Rig rig;
    rig.goOnline();
    rig.cable.lock()->cut(std::make_exception_ptr(unplugged));
    rig.time.advance(1s);
    EXPECT_EQ(rig.model->status.value(), Status::error(unplugged.description()));
    rig.model->set(3, gain(-7));
    rig.time.advance(1s);
    EXPECT_EQ(rig.shown(0, 3), gain(-7));

    rig.goOnline();
    rig.time.advance(1s);
    EXPECT_EQ(rig.written(), none);
    EXPECT_EQ(rig.differing(), none);
}

}  // namespace
}  // namespace Tests
