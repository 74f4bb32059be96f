#include "Wendril/bus.hpp"

#include "tests/Wendril/scripted.hpp"

#include <gtest/gtest.h>

#include <map>

namespace Wendril {
namespace {

using namespace Tests;

const std::string waiting = "waiting";
const std::string noReply = "A caixa não respondeu (função 5)";
const std::string closed = "Conexão fechada";
const std::string unsent = "Falha ao enviar: Input/output error";

Frame frameOf(std::uint8_t address, Bytes payload = {}) { return {9, address, Fun::moduleGet, payload}; }

struct BusTest : testing::Test, Scripted {
    void open() {
        run(bus->onClose([this](const std::exception_ptr& error) {
            closings.push_back(error ? describe(error) : "clean");
        }));
        run(bus->open());
    }

    // A request to that address, written when the line is free.
    Spawned<Frame> start(std::uint8_t address, int retries = 0, Duration timeout = 100ms) {
        auto match = [address](const Frame& frame) { return frame.address == address; };
        auto request = spawn(time.executor(), bus->request(wire(frameOf(address)), timeout, retries, match));
        time.advance(0ms);
        return request;
    }

    // How the task has ended when that time has passed; "" for success.
    template <class T>
    std::string after(Duration duration, Spawned<T>& task) {
        time.advance(duration);
        return task.isDone() ? failureOf([&] { task.get(); }) : waiting;
    }
    std::string afterReply(std::uint8_t address, Spawned<Frame>& request) {
        transport->onData(wire(frameOf(address)));
        return after(0ms, request);
    }

    std::vector<std::string> closings;
};

TEST_F(BusTest, AnAttemptEndsWithItsReplyOrItsOwnTimeout) {
    open();
    auto first = start(1);
    EXPECT_EQ(afterReply(1, first), "");
    time.advance(90ms);
    auto second = start(2);
    EXPECT_EQ(after(99ms, second), waiting);  // the timer of the first has expired by now
    EXPECT_EQ(after(1ms, second), noReply);
    auto patient = start(1, 0, 10s);
    EXPECT_EQ(afterReply(1, patient), "");
    auto brief = start(2, 0, 50ms);
    EXPECT_EQ(after(50ms, brief), noReply);
    auto endless = start(3, 0, Duration::max());
    EXPECT_EQ(after(10'000h, endless), waiting);
    EXPECT_EQ(afterReply(3, endless), "");
}

TEST_F(BusTest, AFrameThatDoesNotMatchIsLoggedAndTheRequestKeepsWaiting) {
    std::vector<std::string> log;
    run(bus->setLogger([&log](std::string line) { log.push_back(std::move(line)); }));
    open();
    auto request = start(1);
    Bytes frame = wire(frameOf(2));
    frame[6] = 0xAB;  // a reserved byte, which the log leaves out
    transport->onData(frame);
    EXPECT_EQ(after(0ms, request), waiting);
    EXPECT_EQ(log, (std::vector<std::string>{"-> 55 09 01 05 00 00 00 00 00 00 00 00 00 00 00 00",
                                             "<- 55 09 02 05 00 00 00 00 00 00 00 00 00 00 00 00"}));
    run(bus->setLogger(nullptr));
    EXPECT_EQ(afterReply(1, request), "");
    EXPECT_EQ(log.size(), 2U);
}

TEST_F(BusTest, OnlyATimeoutIsResentAndOnlyAsOftenAsAllowed) {
    open();
    for (const auto& [retries, sends] : std::map<int, std::size_t>{{-3, 1}, {0, 1}, {1, 2}, {4, 5}}) {
        transport->written.clear();
        auto request = start(1, retries);
        EXPECT_EQ(after(100ms * sends, request), noReply);
        EXPECT_EQ(transport->written, std::vector<Bytes>(sends, wire(frameOf(1))));
    }
    auto late = start(1, 1);
    time.advance(90ms);
    transport->onData(ByteView(wire(frameOf(1))).first(10));
    EXPECT_EQ(after(10ms, late), waiting);
    transport->onData(ByteView(wire(frameOf(1))).subspan(10));  // the reply straddles the time-out
    EXPECT_EQ(after(0ms, late), "");

    const auto silent = transport->answer;
    transport->answer = [](const Frame&) -> std::vector<Frame> { throw TransportError::write(5); };
    auto failed = start(1, 3);
    EXPECT_EQ(after(0ms, failed), unsent);
    transport->answer = silent;
    auto next = start(1);
    EXPECT_EQ(afterReply(1, next), "");
}

TEST_F(BusTest, RequestsAreSentOneByOneInTheOrderOfAsking) {
    open();
    auto a = start(1);
    auto b = start(2);
    auto c = start(3);
    EXPECT_EQ(transport->written.size(), 1U);
    EXPECT_EQ(afterReply(1, a), "");
    EXPECT_EQ(transport->written.size(), 2U);
    EXPECT_EQ(after(100ms, b), noReply);
    EXPECT_EQ(transport->written.back(), wire(frameOf(3)));
    EXPECT_EQ(afterReply(3, c), "");
}

TEST_F(BusTest, TheEndOfTheLinkFailsAllRequestsAndIsReportedOnce) {
    open();
    for (const bool byError : {true, false}) {
        auto first = start(1, byError ? 0 : 3);
        auto queued = start(2);
        if (byError)
            transport->onClose(std::make_exception_ptr(TransportError::write(5)));
        else
            run(bus->close());
        transport->onClose(nullptr);
        EXPECT_EQ(after(0ms, first) + after(0ms, queued), closed + closed);
        run(bus->close());
        EXPECT_EQ(std::exchange(transport->written, {}).size(), 1U);
        EXPECT_EQ(std::exchange(closings, {}), std::vector<std::string>{byError ? unsent : "clean"});
        run(bus->open());
    }
}

TEST_F(BusTest, ReportsAndBytesOfAnEarlierOpeningAreIgnored) {
    open();
    const auto oldClose = transport->onClose;
    const auto oldData = transport->onData;
    oldData(ByteView(wire(frameOf(1, Bytes(256)))).first(20));  // a frame cut by the closing
    run(bus->close());
    run(bus->open());
    auto request = start(1);
    oldData(wire(frameOf(1)));
    oldClose(nullptr);
    EXPECT_EQ(after(0ms, request), waiting);
    EXPECT_EQ(afterReply(1, request), "");
}

TEST_F(BusTest, ABusThatIsNotOpenSendsNothingAndAnOpenOneDoesNotOpenAgain) {
    auto never = start(1);
    EXPECT_EQ(after(0ms, never), closed);
    transport->whileOpening = [](const std::stop_token&) { throw TransportError::write(5); };
    EXPECT_EQ(failureOf([&] { run(bus->open()); }), unsent);
    auto still = start(1);
    EXPECT_EQ(after(0ms, still), closed);
    EXPECT_TRUE(transport->written.empty());
    transport->whileOpening = [openings = 0](const std::stop_token&) mutable { EXPECT_EQ(++openings, 1); };
    run(bus->open());
    run(bus->open());
}

TEST_F(BusTest, ACloseStopsTheOpeningsThatWereAskedForBefore) {
    std::vector<bool> stopped;
    transport->whileOpening = [&](const std::stop_token& stop) {
        bus->abandon();
        stopped.push_back(stop.stop_requested());
    };
    const auto owner = time.executor();
    auto early = spawn(owner, bus->open());
    spawn(owner, bus->close());
    auto interrupted = spawn(owner, bus->open());
    EXPECT_EQ(after(0ms, early) + after(0ms, interrupted), closed);
    EXPECT_EQ(stopped, std::vector{true});
    auto afterTheEnd = spawn(owner, bus->open());
    EXPECT_EQ(after(0ms, afterTheEnd), closed);
}

TEST_F(BusTest, DroppingTheBusEndsItsRequestsWithoutACallOfTheCloseHandler) {
    open();
    auto first = start(1, 1);
    auto queued = start(2);
    client.bus.reset();
    bus.reset();
    transport->onData(wire(frameOf(2)));
    EXPECT_EQ(after(0ms, first) + after(0ms, queued), closed + closed);
    EXPECT_GT(transport->closes, 0);
    EXPECT_TRUE(closings.empty());
}

}  // namespace
}  // namespace Wendril
