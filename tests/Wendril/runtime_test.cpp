#include "Wendril/runtime/serialqueue.hpp"
#include "Wendril/runtime/stream.hpp"
#include "Wendril/runtime/task.hpp"
#include "Wendril/runtime/wakeup.hpp"

#include "simulator/virtualtime.hpp"
#include "tests/chain.hpp"

#include <gtest/gtest.h>

#include <poll.h>

#include <atomic>
#include <future>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace Wendril {
namespace {

using namespace Tests;

Task<int> on(std::shared_ptr<Executor> executor, int value) {
    co_await resumeOn(executor);
    EXPECT_TRUE(executor->isCurrent());
    co_return value;
}

Task<int> failing(std::shared_ptr<Executor> executor) {
    co_await resumeOn(executor);
    throw std::runtime_error("no");
}

Task<int> visit(std::shared_ptr<Executor> home, std::shared_ptr<Executor> away) {
    const int first = co_await on(away, 1);
    EXPECT_TRUE(home->isCurrent());
    bool failed = false;
    try {
        co_await failing(away);
    } catch (const std::runtime_error&) {
        failed = true;
    }
    EXPECT_TRUE(home->isCurrent());
    EXPECT_TRUE(failed);
    co_await resumeOn(away);
    co_return first + 1;
}

TEST(TaskTest, ATaskResumesWhereItWasStartedWhateverItAwaits) {
    Simulator::VirtualTime time;
    const auto home = time.executor();
    auto spawned = spawn(home, visit(home, time.executor()));
    time.runUntilIdle();
    EXPECT_EQ(spawned.get(), 2);

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

TEST(TaskTest, WhoeverDropsAContinuationEndsTheWholeChain) {
    const auto held = std::make_shared<int>(0);
    const auto executor = [] {
        Simulator::VirtualTime time;
        return time.executor();
    }();
    auto unstarted = holding(held, makeStream<int>().second);
    auto onDeadClock = spawn(executor, holding(held, makeStream<int>().second));
    EXPECT_NE(failureOf([&] { onDeadClock.get(); }), "");
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

Task<void> collect(StreamReader<int> stream, std::vector<int>* items) {
    for (;;) {
        const std::optional<int> item = co_await stream.next();
        if (!item) co_return;
        items->push_back(*item);
    }
}

TEST(StreamTest, ItemsArriveInOrderAndTheStreamEndsWithItsLastWriter) {
    const auto reader = std::make_shared<SerialQueue>("reader");
    std::vector<int> items;
    auto stream = makeStream<int>();
    auto collecting = spawn(reader, collect(stream.second, &items));
    {
        const auto writer = std::make_shared<SerialQueue>("writer");
        std::promise<void> written;
        writer->post([&written, out = stream.first] {
            for (int i = 0; i < 1000; ++i)
                out.push(i);
            written.set_value();
        });
        written.get_future().wait();
        stream.first.finish();
        stream.first.push(1000);
    }
    collecting.get();
    std::vector<int> expected(1000);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(items, expected);

    auto second = makeStream<int>();
    auto ending = spawn(reader, collect(second.second, &items));
    second = makeStream<int>();
    ending.get();
}

TEST(SleepTest, ASleepEndsInTimeOrWhenAskedTo) {
    Simulator::VirtualTime time;
    auto sleeping = spawn(time.executor(), sleepFor(60ms));
    time.advance(59ms);
    EXPECT_FALSE(sleeping.isDone());
    time.advance(1ms);
    EXPECT_TRUE(sleeping.get());

    auto stopped = spawn(time.executor(), sleepFor(1h));
    time.advance(1ms);
    stopped.requestStop();
    time.advance(0ms);
    ASSERT_TRUE(stopped.isDone());
    EXPECT_FALSE(stopped.get());

    auto before = spawn(time.executor(), sleepFor(1h));
    before.requestStop();
    time.advance(0ms);
    EXPECT_TRUE(before.isDone());
}

TEST(SerialQueueTest, WorkRunsInOrderOneByOneAndTimersByTheirTime) {
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

TEST(SerialQueueTest, AWatchEndsFromItsOwnHandlerAndTakesWhatItHoldsAlong) {
    const auto queue = std::make_shared<SerialQueue>("queue");
    const Wakeup source;
    source.raise();
    std::promise<void> released;
    const std::shared_ptr<int> held(new int(0), [&released](const int* number) {
        delete number;
        released.set_value();
    });
    std::atomic<int> calls = 0;
    std::promise<SerialQueue::WatchId> id;
    auto idOfWatch = id.get_future().share();
    id.set_value(
        queue->watch(source.descriptor(), POLLIN, [&, held = std::shared_ptr<int>(held), idOfWatch](short) {
            ++calls;
            queue->unwatch(idOfWatch.get());
        }));
    const_cast<std::shared_ptr<int>&>(held).reset();
    released.get_future().wait();
    EXPECT_EQ(calls, 1);
}

TEST(SerialQueueTest, AQueueMayBeDestroyedFromItsOwnWorkAndWithWorkUndone) {
    for (int round = 0; round < 50; ++round) {
        std::promise<void> done;
        auto queue = std::make_shared<SerialQueue>("own");
        auto* const raw = queue.get();
        raw->post([queue = std::move(queue), &done]() mutable {
            queue->postAfter(1h, [held = std::make_shared<int>(1)] {});
            queue.reset();
            done.set_value();
        });
        done.get_future().wait();
    }
}

// Callers on threads of their own, a shared resource on another, and everything dropped midway.
TEST(SerialQueueTest, TasksAcrossThreadsAreSafeToAbandon) {
    for (int round = 0; round < 20; ++round) {
        const auto shared = std::make_shared<SerialQueue>("shared");
        std::vector<std::shared_ptr<SerialQueue>> callers;
        for (int i = 0; i < 3; ++i) {
            callers.push_back(std::make_shared<SerialQueue>("caller"));
            for (int k = 0; k < 20; ++k)
                spawn(callers.back(), visit(callers.back(), shared));
        }
    }
}

}  // namespace
}  // namespace Wendril
