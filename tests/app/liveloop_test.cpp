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
        const auto levels = rig.model->meters.value();
        for (std::size_t i = 0; i < levels.size(); ++i)
            EXPECT_EQ(rig.model->meter(K7Q::meterChannels.at(i)), levels[i]);
    }
    EXPECT_GT(rig.model->meter("In0"), AppModel::silence);
    EXPECT_EQ(rig.model->meter("XYZ"), AppModel::silence);
    rig.model->meters = std::vector<float>{-3, -4};
    EXPECT_EQ(rig.model->meter("Out0"), AppModel::silence) << "a board may report fewer";
}

TEST(LiveLoopTest, TenReadingsMissedInARowAreReportedOnce) {
    for (const auto& [misses, notices] : {std::pair(9, 0), {10, 1}, {40, 1}}) {
        Rig rig;
        rig.goOnline();
        const History reports(rig.model->notice);
        int left = misses;
        rig.port->swallow = [&left](const Sent&) { return left-- > 0; };
        ASSERT_TRUE(rig.until([&] { return left < -20; }));
        EXPECT_EQ(reports.values.size(), static_cast<std::size_t>(notices)) << misses;
        EXPECT_EQ(rig.notice(), notices > 0 ? "A caixa 01 parou de responder" : "");

        rig.model->notice = std::nullopt;
        left = 10;
        ASSERT_TRUE(rig.until([&] { return left < 0; }));
        EXPECT_EQ(rig.notice(), "A caixa 01 parou de responder") << "a success begins the count anew";
    }
}

}  // namespace
}  // namespace Tests
