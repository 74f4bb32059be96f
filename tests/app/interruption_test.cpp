// Operations that are interrupted at any moment: the model ends in the state of the latest one.
#include "rig.hpp"

namespace Tests {
namespace {

// Connects anew for each try and interrupts after so many functions: after each at the beginning,
// then after every 31st, until the connection is complete.
void whileConnecting(const std::function<void(Rig&)>& interrupt) {
    bool connecting = true;
    for (int moment = 0; connecting && !testing::Test::HasFailure(); moment += moment < 40 ? 1 : 31) {
        SCOPED_TRACE(moment);
        Rig rig(chainOf(2));
        rig.model->start(rig.model->connect());
        rig.steps(moment);
        connecting = !rig.model->status.value().isOnline();
        interrupt(rig);
    }
}

TEST(InterruptionTest, WhatInterruptsAConnectionRules) {
    // Each returns the status that follows.
    const std::function<Status(Rig&)> interruptions[] = {
        [](Rig& rig) {
            rig.run(rig.model->disconnect());
            return Status::offline();
        },
        [](Rig& rig) {
            rig.model->portChoice = "/dev/other";
            rig.run(rig.model->connect());
            return Status::online("/dev/other");
        },
        [](Rig& rig) {
            rig.run(rig.model->discover(true));  // without a link it does nothing
            return Status::online("/dev/ttyUSB0");
        },
        [](Rig& rig) {
            if (rig.port->holders == 0) return Status::online("/dev/ttyUSB0");  // not yet open
            rig.cable.lock()->cut(nullptr);
            return Status::error("A conexão com as caixas caiu");
        },
    };
    for (const auto& interrupt : interruptions)
        whileConnecting([&interrupt](Rig& rig) {
            const Status expected = interrupt(rig);
            rig.time.advance(20s);
            rig.port->sent.clear();
            rig.time.advance(1s);
            const bool online = expected.isOnline();
            EXPECT_EQ(rig.model->status.value(), expected);
            EXPECT_EQ(rig.model->progress.value(), std::nullopt);
            EXPECT_EQ(rig.model->notice.value(), std::nullopt);
            EXPECT_EQ(rig.port->holders, online ? 1 : 0);
            EXPECT_EQ(rig.port->sent.empty(), !online);
            EXPECT_LE(rig.port->sent.size(), 17U) << "more than one live loop";
            const auto& speakers = rig.model->speakers.value();
            EXPECT_TRUE(!online || speakers.at(1)->values.value().size() == 92);
            EXPECT_TRUE(expected != Status::offline() || speakers.empty());
        });
}

TEST(InterruptionTest, ConnectingWhileDisconnectingWaitsForThePort) {
    for (int moment = 0; moment < 12; ++moment) {
        Rig rig;
        rig.goOnline();
        rig.model->start(rig.model->disconnect());
        rig.steps(moment);
        rig.goOnline();
        EXPECT_EQ(rig.speaker(0)->values.value().size(), 92U) << moment;
    }
}

// Only its owner keeps the model, and only the model keeps the link.
void expectEnd(Rig& rig) {
    const std::weak_ptr<AppModel> model = rig.model;
    rig.model.reset();
    EXPECT_TRUE(model.expired());
    rig.time.advance(1ms);
    EXPECT_EQ(rig.port->holders, 0);
    rig.time.runUntilIdle();
    EXPECT_TRUE(rig.cable.expired());
}

TEST(InterruptionTest, TheModelEndsWhileConnecting) { whileConnecting(expectEnd); }

TEST(InterruptionTest, TheModelEndsWhileEditsAndPresetsAreSentOrTheLinkCloses) {
    for (int moment = 0; moment < 120; ++moment) {
        Rig rig;
        rig.goOnline();
        for (std::uint8_t module = 1; module <= 6; ++module)
            rig.model->set(module, gain(-1));
        rig.model->start(rig.model->savePreset(1, "Show"));
        rig.steps(moment / 2);
        if (moment % 2 == 0) rig.model->start(rig.model->disconnect());
        rig.steps(moment % 6);
        expectEnd(rig);
    }
}

TEST(InterruptionTest, AReadingThatArrivesWhileTheLinkClosesIsNotShown) {
    for (const Duration moment : {1ms, 2ms, 3ms, 30ms}) {
        Rig rig;
        rig.goOnline();
        const auto clock = rig.time.executor();
        rig.port->swallow = [&](const Sent&) {
            clock->postAfter(moment, [&] { rig.model->start(rig.model->disconnect()); });
            return false;
        };
        rig.time.advance(1s);
        EXPECT_EQ(rig.model->meters.value(), std::vector<float>(6, AppModel::silence)) << moment.count();
        EXPECT_EQ(rig.model->notice.value(), std::nullopt);
    }
}

}  // namespace
}  // namespace Tests
