// Whatever happens at whatever moment of a run: the model ends in the state of whoever came last.
#include "rig.hpp"

namespace Tests {
namespace {

// Each piece of work at the start of a run, then every few.
template <class Try>
void atManyMoments(Try attempt) {
    for (int moment = 0; attempt(moment) && !testing::Test::HasFailure();)
        moment += moment < 40 ? 1 : 31;
}

// False once the run ends before that moment.
bool connectingUntil(Rig& rig, int moment) {
    rig.model->start(rig.model->connect());
    rig.steps(moment);
    return !rig.model->status.value().isOnline();
}

TEST(InterruptionTest, DisconnectingWhileConnecting) {
    atManyMoments([](int moment) {
        Rig rig;
        const bool connecting = connectingUntil(rig, moment);
        rig.run(rig.model->disconnect());
        const std::size_t sent = rig.port->sent.size();
        rig.time.advance(20s);
        EXPECT_EQ(rig.model->status.value(), Status::offline()) << moment;
        EXPECT_EQ(rig.model->progress.value(), std::nullopt);
        EXPECT_TRUE(rig.model->speakers.value().empty());
        EXPECT_EQ(rig.model->notice.value(), std::nullopt);
        EXPECT_EQ(rig.port->holders, 0);
        EXPECT_EQ(rig.port->sent.size(), sent);
        return connecting;
    });
}

TEST(InterruptionTest, ConnectingAnewWhileConnecting) {
    atManyMoments([](int moment) {
        Rig rig;
        const bool connecting = connectingUntil(rig, moment);
        rig.model->portChoice = "/dev/other";
        rig.goOnline();
        rig.time.advance(1s);
        EXPECT_EQ(rig.model->status.value(), Status::online("/dev/other")) << moment;
        EXPECT_EQ(rig.differing(0), std::vector<int>{});
        EXPECT_EQ(rig.port->holders, 1);
        EXPECT_LE(rig.port->sent.size(), 18U) << "one live loop";
        return connecting;
    });
}

TEST(InterruptionTest, ConnectingWhileDisconnecting) {
    for (int moment = 0; moment < 12; ++moment) {
        Rig rig;
        rig.goOnline();
        rig.model->start(rig.model->disconnect());
        rig.steps(moment);
        rig.goOnline();
        EXPECT_EQ(rig.port->openings, 2) << moment;
        EXPECT_EQ(rig.speaker(0)->values.value().size(), 92U);
    }
}

TEST(InterruptionTest, LosingTheLinkWhileConnecting) {
    atManyMoments([](int moment) {
        Rig rig;
        const bool connecting = connectingUntil(rig, moment);
        const auto cable = rig.cable.lock();
        const bool open = rig.port->holders == 1;
        if (open) cable->cut(nullptr);
        rig.time.advance(20s);
        const Status expected =
            open ? Status::error("A conexão com as caixas caiu") : Status::online("/dev/ttyUSB0");
        EXPECT_EQ(rig.model->status.value(), expected) << moment;
        EXPECT_EQ(rig.model->progress.value(), std::nullopt);
        EXPECT_EQ(rig.model->notice.value(), std::nullopt);
        return connecting;
    });
}

// Nobody but its owner keeps the model, and nobody keeps the link without it.
void endOf(Rig& rig) {
    const std::weak_ptr<AppModel> model = rig.model;
    rig.model.reset();
    EXPECT_TRUE(model.expired());
    rig.time.runUntilIdle();
    EXPECT_EQ(rig.port->holders, 0);
    EXPECT_TRUE(rig.cable.expired());
}

TEST(InterruptionTest, TheModelEndsWhileConnecting) {
    atManyMoments([](int moment) {
        Rig rig;
        const bool connecting = connectingUntil(rig, moment);
        endOf(rig);
        return connecting;
    });
}

TEST(InterruptionTest, TheModelEndsWhileEditsAndPresetsAreSentOrTheLinkCloses) {
    for (const bool closing : {false, true})
        for (int moment = 0; moment < 60; ++moment) {
            Rig rig;
            rig.goOnline();
            for (std::uint8_t module = 1; module <= 6; ++module)
                rig.model->set(module, gain(-1));
            rig.model->start(rig.model->savePreset(1, "Show"));
            rig.steps(moment);
            if (closing) rig.model->start(rig.model->disconnect());
            rig.steps(closing ? moment % 6 : 0);
            endOf(rig);
        }
}

// The clock ends with tasks suspended everywhere; what they hold goes with them.
TEST(InterruptionTest, TheExecutorsEndWhileConnecting) {
    atManyMoments([](int moment) {
        std::weak_ptr<Cable> cable;
        std::weak_ptr<AppModel> model;
        bool connecting = false;
        {
            Rig rig;
            connecting = connectingUntil(rig, moment);
            cable = rig.cable;
            model = rig.model;
        }
        EXPECT_TRUE(cable.expired()) << moment;
        EXPECT_TRUE(model.expired()) << moment;
        return connecting;
    });
}

// A reading that comes while the link closes finds its loop ended.
TEST(InterruptionTest, DisconnectingSilencesTheMetersForGood) {
    for (const Duration moment : {1ms, 2ms, 3ms, 30ms}) {
        Rig rig;
        rig.goOnline();
        const auto clock = rig.time.executor();
        rig.port->swallow = [&](const Sent&) {
            clock->postAfter(moment, [&] { rig.model->start(rig.model->disconnect()); });
            return false;
        };
        rig.time.advance(1s);
        EXPECT_EQ(rig.model->status.value(), Status::offline());
        EXPECT_EQ(rig.model->meters.value(), std::vector<float>(6, AppModel::silence)) << moment.count();
        EXPECT_EQ(rig.model->notice.value(), std::nullopt);
    }
}

}  // namespace
}  // namespace Tests
