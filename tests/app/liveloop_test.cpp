#include "rig.hpp"

namespace Tests {
namespace {

TEST(LiveLoopTest, ShowsTheLevelsOfTheFocusedSpeaker) {
    Rig rig(chainOf(2));
    rig.goOnline();
    for (const std::uint8_t address : {1, 2}) {
        rig.model->target = address;
        rig.time.advance(100ms);
        rig.port->sent.clear();
        rig.time.advance(1s);
        EXPECT_NEAR(static_cast<double>(rig.port->sent.size()), 1000 / 62.0, 1) << "every 62 ms";
        for (const Sent& sent : rig.port->sent)
            EXPECT_EQ(sent.address, address);
    }
    EXPECT_GT(rig.model->meters.value().at(0), AppModel::silence);
    rig.model->meters = std::vector<float>{-1, -2, -3, -4, -5};  // a board may report fewer than six
    EXPECT_EQ(rig.model->meter("Out2"), -5);
    EXPECT_EQ(rig.model->meter("Out3"), AppModel::silence);
    EXPECT_EQ(rig.model->meter("XYZ"), AppModel::silence);
}

TEST(LiveLoopTest, TenReadingsMissedInARowAreReportedOnce) {
    Rig rig;
    rig.goOnline();
    int left = 0;
    rig.port->swallow = [&left](const Sent&) { return left-- > 0; };
    for (const auto& [misses, reported] : {std::pair(9, false), {9, false}, {10, true}, {40, true}}) {
        left = misses;
        ASSERT_TRUE(rig.until([&] { return left < -20 || rig.model->notice.value(); }));
        EXPECT_EQ(rig.notice(), reported ? "A caixa 01 parou de responder" : "") << misses;
        rig.model->notice = std::nullopt;
        ASSERT_TRUE(rig.until([&] { return left < -20; }));
        EXPECT_EQ(rig.notice(), "");
    }
}

}  // namespace
}  // namespace Tests
