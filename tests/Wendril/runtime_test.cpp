#include "Wendril/runtime/serialqueue.hpp"
#include "Wendril/runtime/stream.hpp"
#include "Wendril/runtime/wakeup.hpp"

#include "tests/chain.hpp"

#include <gtest/gtest.h>

#include <poll.h>

#include <atomic>
#include <functional>
#include <future>

namespace Wendril {
namespace {

using namespace Tests;

Task<int> on(std::shared_ptr<Executor> executor, int value) {
    co_await resumeOn(executor);
    EXPECT_TRUE(executor->isCurrent());
    if (value < 0) throw std::runtime_error("negative");
    co_return value;
}

Task<int> visit(std::shared_ptr<Executor> home, std::shared_ptr<Executor> away) {
    const int first = co_await on(away, 1);
    EXPECT_TRUE(home->isCurrent());
    try {
        co_await on(away, -1);
        ADD_FAILURE();
    } catch (const std::runtime_error&) {
        EXPECT_TRUE(home->isCurrent());
    }
    co_await resumeOn(away);
    co_return first + 1;
}

TEST(TaskTest, ATaskResumesWhereItWasStartedWhateverItAwaits) {
    const auto a = std::make_shared<SerialQueue>("a");
    const auto b = std::make_shared<SerialQueue>("b");
    EXPECT_EQ(spawn(a, visit(a, b)).get(), 2);
}

Task<int> immediate(int value) { co_return value; }

Task<long> sumOf(int count) {
    long sum = 0;
    for (int i = 0; i < count; ++i)
        sum += co_await immediate(i);
    co_return sum;
}

TEST(TaskTest, ALongLoopOfReadyTasksNeedsNoStack) {
    Simulator::VirtualTime time;
    EXPECT_EQ(time.run(sumOf(300'000)), 300'000L * 299'999 / 2);
}

Task<void> holding(std::shared_ptr<int> held, StreamReader<int> stream) {
    const std::vector<std::shared_ptr<int>> copies{held};
    co_await stream.next();
}

TEST(TaskTest, ATaskThatNobodyWillResumeIsDestroyedWithAllThatItHolds) {
    const auto held = std::make_shared<int>(0);
    const auto executor = Simulator::VirtualTime().executor();
    auto unstarted = holding(held, makeStream<int>().second);
    auto onDeadClock = spawn(executor, holding(held, makeStream<int>().second));
    EXPECT_EQ(failureOf([&] { onDeadClock.get(); }), "the executor of the task has ended");
    {
        Simulator::VirtualTime time;
        const auto stream = makeStream<int>();
        spawn(time.executor(), holding(held, stream.second));
        time.runUntilIdle();
        EXPECT_EQ(held.use_count(), 4);  // here, in the unstarted task, and twice in the waiting one
    }
    EXPECT_EQ(held.use_count(), 2);
    unstarted = {};
    EXPECT_EQ(held.use_count(), 1);
}

Task<std::vector<int>> collect(StreamReader<int> stream) {
    std::vector<int> items;
    while (const std::optional<int> item = co_await stream.next())
        items.push_back(*item);
    co_return items;
}

TEST(StreamTest, ItemsArriveInOrderAndTheStreamEndsWithItsLastWriter) {
    for (const bool byName : {true, false}) {
        Simulator::VirtualTime time;
        auto stream = makeStream<int>();
        auto collecting = spawn(time.executor(), collect(stream.second));
        time.runUntilIdle();
        {
            const StreamWriter<int> writer = std::move(stream.first);
            writer.push(1);
            writer.push(2);
            if (byName) writer.finish();
            if (byName) writer.push(3);
        }
        time.runUntilIdle();
        ASSERT_TRUE(collecting.isDone());
        EXPECT_EQ(collecting.get(), (std::vector{1, 2}));
    }
}

TEST(SleepTest, ASleepEndsInTimeOrWhenAskedTo) {
    Simulator::VirtualTime time;
    auto sleeping = spawn(time.executor(), sleepFor(60ms));
    time.advance(59ms);
    EXPECT_FALSE(sleeping.isDone());
    time.advance(1ms);
    EXPECT_TRUE(sleeping.get());
    for (const Duration before : {0ms, 1ms}) {
        auto stopped = spawn(time.executor(), sleepFor(Duration::max()));
        if (before > 0ms) time.advance(before);
        EXPECT_FALSE(stopped.isDone());
        stopped.requestStop();
        time.advance(0ms);
        ASSERT_TRUE(stopped.isDone());
        EXPECT_FALSE(stopped.get());
    }
    // On a thread, where the time-out of a wait is real.
    auto endless = spawn(std::make_shared<SerialQueue>("queue"), sleepFor(Duration::max()));
    EXPECT_FALSE(endless.waitFor(0ms));
    endless.requestStop();
    EXPECT_TRUE(endless.waitFor(Duration::max()));
}

TEST(SerialQueueTest, FunctionsRunInOrderAndTimersByTheirTime) {
    SerialQueue queue("queue");
    std::string order;
    std::promise<void> done;
    queue.post([&] {
        queue.postAfter(3ms, [&] {
            order += 'd';
            done.set_value();
        });
        queue.postAfter(1ms, [&] { order += 'b'; });
        queue.postAfter(1ms, [&] { order += 'c'; });
        queue.post([&] { order += 'a'; });
        EXPECT_TRUE(queue.isCurrent());
    });
    done.get_future().wait();
    EXPECT_EQ(order, "abcd");
    EXPECT_FALSE(queue.isCurrent());
}

TEST(SerialQueueTest, TimersGetTheirTurnAmongFunctionsThatNeverEnd) {
    std::function<void()> again;
    SerialQueue queue("queue");
    again = [&] { queue.post([&] { again(); }); };
    std::promise<void> expired;
    queue.postAfter(1ms, [&] { expired.set_value(); });
    queue.post([&] { again(); });
    expired.get_future().wait();
}

TEST(SerialQueueTest, AWatchThatEndsInItsOwnHandlerIsNotCalledAgainAndDropsWhatItHolds) {
    const auto queue = std::make_shared<SerialQueue>("queue");
    const Wakeup source;
    source.raise();
    std::promise<void> released;
    std::atomic<int> calls = 0;
    std::promise<SerialQueue::WatchId> id;
    {
        std::shared_ptr<void> held(nullptr, [&released](void*) { released.set_value(); });
        id.set_value(
            queue->watch(source.descriptor(), POLLIN, [&, held, ownId = id.get_future().share()](short) {
                ++calls;
                queue->unwatch(ownId.get());
            }));
    }
    released.get_future().wait();
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace Wendril
