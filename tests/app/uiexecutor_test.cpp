#include "app/model/appmodel.hpp"
#include "app/model/uiexecutor.hpp"
#include "tests/listener.hpp"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace Tests {
namespace {

using namespace std::chrono_literals;
using namespace Corvane;
using namespace Wendril;

class UiExecutorTest : public testing::Test {
protected:
    void run() { QCoreApplication::exec(); }

    int arguments = 1;
    char name[5] = "test";
    char* list[2] = {name, nullptr};
    std::optional<QCoreApplication> application{std::in_place, arguments, list};
    std::shared_ptr<UiExecutor> executor = std::make_shared<UiExecutor>();
};

TEST_F(UiExecutorTest, RunsWorkInOrderOfPostingAndTimersByTheirTime) {
    std::vector<int> order;
    executor->postAfter(30ms, [&] {
        order.push_back(6);
        QCoreApplication::quit();
    });
    executor->postAfter(10ms, [&] { order.push_back(5); });
    executor->post([&] {
        order.push_back(1);
        executor->post([&] { order.push_back(4); });
        executor->postAfter(-1s, [&] { order.push_back(3); });
    });
    executor->post([&] { order.push_back(2); });
    const TimePoint start = executor->now();
    run();
    EXPECT_GE(executor->now() - start, 30ms);
    std::ranges::sort(order.begin() + 2, order.begin() + 4);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4, 5, 6}));
}

TEST_F(UiExecutorTest, TakesWorkAndTimersFromOtherThreadsInTheirOrder) {
    constexpr int count = 2000;
    std::vector<int> seen[2];
    int left = 2 * count;
    std::vector<std::thread> posters;
    for (auto& mine : seen)
        posters.emplace_back([&, this] {
            EXPECT_FALSE(executor->isCurrent());
            for (int i = 0; i < count; ++i)
                executor->postAfter(0s, [&, i] {
                    EXPECT_TRUE(executor->isCurrent());
                    mine.push_back(i);
                    if (--left == 0) executor->postAfter(5ms, [] { QCoreApplication::quit(); });
                });
        });
    run();
    for (std::thread& poster : posters)
        poster.join();
    for (const auto& mine : seen) {
        EXPECT_EQ(mine.size(), std::size_t{count});
        EXPECT_TRUE(std::ranges::is_sorted(mine));
    }
}

TEST_F(UiExecutorTest, AnEventLoopInsideWorkGoesOnWithTheRest) {
    executor->post([] {
        QEventLoop inner;
        QTimer patience;
        QObject::connect(&patience, &QTimer::timeout, &inner, &QEventLoop::quit);
        patience.start(5s);
        QObject::connect(qApp, &QObject::objectNameChanged, &inner, &QEventLoop::quit);
        inner.exec();
    });
    executor->post([this] { executor->post([] { qApp->setObjectName("heard"); }); });
    executor->postAfter(20ms, [] { QCoreApplication::quit(); });
    const TimePoint start = executor->now();
    run();
    EXPECT_LT(executor->now() - start, 4s);
}

// A flood of work leaves room for the user's input.
TEST_F(UiExecutorTest, WorkThatPostsWorkDoesNotStarveTheEventLoop) {
    std::function<void()> again = [&] { executor->post(again); };
    executor->post(again);
    QTimer input;
    QObject::connect(&input, &QTimer::timeout, qApp, &QCoreApplication::quit);
    input.start(10ms);
    run();
}

Task<void> sleeper(std::shared_ptr<int> held) {
    auto sleep = sleepFor(1h);
    co_await std::move(sleep);
    *held = 1;
}

TEST_F(UiExecutorTest, WorkUndoneWhenTheApplicationEndsIsDropped) {
    const auto held = std::make_shared<int>();
    const std::weak_ptr<UiExecutor> weak = executor;
    spawn<void>(executor, sleeper(held));
    executor->postAfter(5ms, [] { QCoreApplication::quit(); });
    run();
    executor->post([held] { *held = 2; });
    spawn<void>(executor, sleeper(held));
    EXPECT_GT(held.use_count(), 3);
    executor.reset();
    EXPECT_FALSE(weak.expired()) << "the sleeper still needs it";
    application.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(*held, 0);
}

TEST_F(UiExecutorTest, ItMayOutliveTheApplicationAndEndOnAnotherThread) {
    const auto held = std::make_shared<int>();
    executor->post([held] {});
    application.reset();
    executor->post([held] {});
    EXPECT_EQ(held.use_count(), 1);
    std::thread([last = std::move(executor)] {}).join();

    application.emplace(arguments, list);
    executor = std::make_shared<UiExecutor>();
    executor->post([held] { *held = 1; });
    std::thread([last = std::move(executor)] {}).join();
    QCoreApplication::processEvents();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(*held, 0);
}

TEST_F(UiExecutorTest, ABridgeThatDoesNotAnswerHoldsUpNobody) {
    const DeafListener bridge;
    auto model = std::make_shared<AppModel>(Surroundings{
        .executor = executor,
        .serialPorts = [] { return std::vector<std::string>(); },
        .extraPort = "",
        .serial = nullptr,
        .bridge = [&bridge](const std::string&,
                            int) { return std::make_shared<TCPTransport>("127.0.0.1", bridge.port()); },
    });
    const TimePoint start = executor->now();
    const auto comesTo = [&](Status::Case state) {
        while (model->status.value().state != state && executor->now() - start < TCPTransport::connectLimit)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return model->status.value().state == state;
    };
    QTimer tick;  // so that there is always an event to wait for
    tick.start(1ms);
    model->start(model->connect());
    EXPECT_TRUE(comesTo(Status::Case::working));
    model->start(model->disconnect());
    EXPECT_TRUE(comesTo(Status::Case::offline));
    model->start(model->connect());
    EXPECT_TRUE(comesTo(Status::Case::working));
    tick.stop();
    model.reset();
    executor.reset();
    application.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, TCPTransport::connectLimit)
        << "closed while it opens";
}

}  // namespace
}  // namespace Tests
