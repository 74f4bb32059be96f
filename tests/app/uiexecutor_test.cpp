#include "app/model/uiexecutor.hpp"

#include "Wendril/runtime/task.hpp"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace Tests {
namespace {

using namespace std::chrono_literals;
using namespace Corvane;
using namespace Wendril;

class UiExecutorTest : public testing::Test {
protected:
    int arguments = 1;
    char name[5] = "test";
    char* list[2] = {name, nullptr};
    std::optional<QCoreApplication> application{std::in_place, arguments, list};
    std::shared_ptr<UiExecutor> executor = std::make_shared<UiExecutor>();
};

TEST_F(UiExecutorTest, RunsWorkInOrderOfPostingAndTimersByTheirTime) {
    std::vector<int> order;
    bool inTime = false;
    const auto note = [&order](int number) { return [&order, number] { order.push_back(number); }; };
    const TimePoint start = executor->now();
    executor->postAfter(1h, note(4));
    executor->postAfter(10ms, [&] { inTime = executor->now() - start >= 10ms; });
    executor->post([&] {
        executor->post(note(2));
        executor->postAfter(-1s, note(3));
    });
    executor->post(note(1));
    QTimer::singleShot(30ms, qApp, [this] { executor->post([] { QCoreApplication::quit(); }); });
    QCoreApplication::exec();
    EXPECT_TRUE(inTime);
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST_F(UiExecutorTest, TakesWorkFromAnotherThreadInItsOrder) {
    constexpr int count = 2000;
    std::vector<int> seen;
    std::thread poster([&, this] {
        EXPECT_FALSE(executor->isCurrent());
        for (int i = 0; i < count; ++i)
            executor->postAfter(0s, [&, i] {
                EXPECT_TRUE(executor->isCurrent());
                seen.push_back(i);
                if (i + 1 == count) QCoreApplication::quit();
            });
    });
    QCoreApplication::exec();
    poster.join();
    EXPECT_EQ(seen.size(), std::size_t{count});
    EXPECT_TRUE(std::ranges::is_sorted(seen));
}

TEST_F(UiExecutorTest, AnEventLoopInsideWorkRunsTheWorkBehindIt) {
    QEventLoop inner;
    bool running = false;
    executor->post([&] {
        QTimer::singleShot(5s, &inner, &QEventLoop::quit);
        inner.exec();
        QCoreApplication::quit();
    });
    executor->post([&] {
        executor->post([&] {
            running = inner.isRunning();
            inner.quit();
        });
    });
    QCoreApplication::exec();
    EXPECT_TRUE(running);
}

TEST_F(UiExecutorTest, WorkThatPostsWorkDoesNotStarveTheEventLoop) {
    std::function<void()> again = [&] { executor->post(again); };
    executor->post(again);
    QTimer::singleShot(10ms, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

Task<void> sleeper(std::shared_ptr<int> held) {
    co_await sleepFor(1h);
    *held = 1;
}

TEST_F(UiExecutorTest, WorkThatHasNotRunIsDroppedWhenItOrTheApplicationEnds) {
    const auto held = std::make_shared<int>();
    const std::weak_ptr<UiExecutor> weak = executor;
    const auto endOnAnotherThread = [this] { std::thread([last = std::move(executor)] {}).join(); };
    spawn<void>(executor, sleeper(held));
    executor->postAfter(5ms, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    endOnAnotherThread();
    EXPECT_FALSE(weak.expired()) << "the sleeping task still needs it";
    application.reset();
    EXPECT_TRUE(weak.expired());
    EXPECT_EQ(held.use_count(), 1);

    application.emplace(arguments, list);
    executor = std::make_shared<UiExecutor>();
    executor->post([held] { *held = 1; });
    endOnAnotherThread();
    QCoreApplication::processEvents();
    EXPECT_EQ(held.use_count(), 1);

    executor = std::make_shared<UiExecutor>();
    executor->post([held] { *held = 1; });
    application.reset();
    executor->post([held] { *held = 1; });
    EXPECT_EQ(held.use_count(), 1);
    endOnAnotherThread();
    EXPECT_EQ(*held, 0);
}

}  // namespace
}  // namespace Tests
