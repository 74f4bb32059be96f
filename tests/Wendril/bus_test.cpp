#include "Wendril/bus.hpp"

#include "simulator/virtualtime.hpp"
#include "tests/chain.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace Wendril {
namespace {

using namespace Tests;

Frame frameOf(Fun fun, std::uint8_t address, Bytes payload = {}) {
    return {9, address, fun, std::move(payload)};
}

Bytes wire(const Frame& frame) { return FrameCodec::encode(frame, false, {}); }

// A far end that the test plays itself.
class ManualTransport final : public Transport {
public:
    explicit ManualTransport(std::shared_ptr<Executor> executor)
        : executor(std::move(executor)) {}

    std::string name() const override { return "manual"; }
    void open(OnData data, OnClose close) override {
        if (openError) std::rethrow_exception(openError);
        onData = std::move(data);
        onClose = std::move(close);
    }
    void write(ByteView data) override {
        if (writeError) std::rethrow_exception(writeError);
        written.emplace_back(data.begin(), data.end());
    }
    void close() override { ++closes; }
    std::shared_ptr<Executor> queue() const override { return executor; }

    const std::shared_ptr<Executor> executor;
    OnData onData;
    OnClose onClose;
    std::vector<Bytes> written;
    int closes = 0;
    std::exception_ptr openError;
    std::exception_ptr writeError;
};

struct BusTest : testing::Test {
    BusTest()
        : transport(std::make_shared<ManualTransport>(time.executor()))
        , bus(std::make_shared<Bus>(transport)) {}

    void open() {
        time.run(bus->onClose([this](const std::exception_ptr& error) {
            closings.push_back(error ? describe(error) : "clean");
        }));
        time.run(bus->open());
    }

    Spawned<Frame> start(std::uint8_t address, int retries = 0, Duration timeout = 100ms) {
        auto match = [address](const Frame& frame) { return frame.address == address; };
        auto spawned = spawn(time.executor(),
                             bus->request(wire(frameOf(Fun::moduleGet, address)), timeout, retries, match));
        time.advance(0ms);
        return spawned;
    }

    void receive(const Frame& frame) {
        transport->onData(wire(frame));
        time.advance(0ms);
    }

    template <class T>
    std::string outcome(Spawned<T>& request) {
        if (!request.isDone()) return "waiting";
        return failureOf([&] { request.get(); });
    }

    Simulator::VirtualTime time;
    std::shared_ptr<ManualTransport> transport;
    std::shared_ptr<Bus> bus;
    std::vector<std::string> closings;
};

TEST_F(BusTest, AReplyEndsItsRequestAndItsTimerDisturbsNobody) {
    open();
    auto first = start(1);
    receive(frameOf(Fun::moduleGet, 1, {1, 2, 3, 4}));
    ASSERT_TRUE(first.isDone());
    EXPECT_EQ(first.get(), frameOf(Fun::moduleGet, 1, {1, 2, 3, 4}));
    time.advance(90ms);
    auto second = start(2);
    time.advance(50ms);  // the first request's timer has fired by now
    EXPECT_EQ(outcome(second), "waiting");
    time.advance(50ms);
    EXPECT_EQ(outcome(second), "A caixa não respondeu (função 5)");
}

TEST_F(BusTest, AFrameOfAnotherIsLoggedAndTheRequestKeepsWaiting) {
    std::vector<std::string> log;
    time.run(bus->setLogger([&log](std::string line) { log.push_back(std::move(line)); }));
    open();
    auto request = start(1);
    receive(frameOf(Fun::moduleGet, 2));
    EXPECT_EQ(outcome(request), "waiting");
    receive(frameOf(Fun::moduleGet, 1));
    EXPECT_EQ(outcome(request), "");
    EXPECT_EQ(log, (std::vector<std::string>{"-> 55 09 01 05 00 00 00 00 00 00 00 00 00 00 00 00",
                                             "<- 55 09 02 05 00 00 00 00 00 00 00 00 00 00 00 00",
                                             "<- 55 09 01 05 00 00 00 00 00 00 00 00 00 00 00 00"}));
}

TEST_F(BusTest, OnlyATimeoutIsResentAndOnlyAsOftenAsAllowed) {
    open();
    for (const int retries : {-3, 0, 1, 4}) {
        transport->written.clear();
        auto request = start(1, retries);
        time.advance(100ms * (std::max(retries, 0) + 1));
        EXPECT_EQ(outcome(request), "A caixa não respondeu (função 5)");
        EXPECT_EQ(transport->written.size(), static_cast<std::size_t>(std::max(retries, 0) + 1));
    }
}

TEST_F(BusTest, ALateReplyCompletesTheResentRequest) {
    open();
    auto request = start(1, 1);
    time.advance(150ms);
    ASSERT_EQ(transport->written.size(), 2U);
    receive(frameOf(Fun::moduleGet, 1));
    EXPECT_EQ(outcome(request), "");
}

TEST_F(BusTest, RequestsAreServedOneByOneInTheOrderOfAsking) {
    open();
    auto a = start(1);
    auto b = start(2);
    auto c = start(3);
    EXPECT_EQ(transport->written.size(), 1U);
    receive(frameOf(Fun::moduleGet, 1));
    EXPECT_EQ(transport->written.size(), 2U);
    time.advance(100ms);  // b fails, c has its turn
    EXPECT_EQ(outcome(b), "A caixa não respondeu (função 5)");
    ASSERT_EQ(transport->written.size(), 3U);
    EXPECT_EQ(transport->written.back()[2], 3);
    receive(frameOf(Fun::moduleGet, 3));
    EXPECT_EQ(outcome(c), "");
}

TEST_F(BusTest, ClosingFailsTheWaitingAtOnceAndTheQueuedWithoutAWrite) {
    open();
    auto waiting = start(1, 3);
    auto queued = start(2);
    auto alsoQueued = start(3);
    time.run(bus->close());
    time.advance(0ms);
    for (auto* request : {&waiting, &queued, &alsoQueued})
        EXPECT_EQ(outcome(*request), "Conexão fechada");
    EXPECT_EQ(transport->written.size(), 1U);
    EXPECT_EQ(closings, std::vector<std::string>{"clean"});
}

TEST_F(BusTest, TheEndOfTheLinkIsToldOnceHoweverOftenItIsReported) {
    open();
    auto request = start(1);
    const auto error = std::make_exception_ptr(TransportError::open("/dev/x", 5));
    transport->onClose(error);
    transport->onClose(nullptr);
    time.advance(0ms);
    time.run(bus->close());
    transport->onClose(nullptr);
    time.advance(0ms);
    EXPECT_EQ(outcome(request), "Conexão fechada");
    EXPECT_EQ(closings, std::vector<std::string>{"Não foi possível abrir /dev/x: Input/output error"});
}

TEST_F(BusTest, AReportFromAnEarlierOpeningDoesNotEndTheNext) {
    open();
    const auto staleReport = transport->onClose;
    const auto staleData = transport->onData;
    time.run(bus->close());
    time.run(bus->open());
    auto request = start(1);
    staleData(wire(frameOf(Fun::moduleGet, 1)));
    staleReport(nullptr);
    time.advance(0ms);
    EXPECT_EQ(outcome(request), "waiting");
    receive(frameOf(Fun::moduleGet, 1));
    EXPECT_EQ(outcome(request), "");
}

TEST_F(BusTest, AClosedBusWritesNothing) {
    auto never = start(1);
    EXPECT_EQ(outcome(never), "Conexão fechada");
    EXPECT_TRUE(transport->written.empty());
    transport->openError = std::make_exception_ptr(TransportError::open("/dev/x", 2));
    EXPECT_EQ(failureOf([&] { time.run(bus->open()); }),
              "Não foi possível abrir /dev/x: No such file or directory");
    auto still = start(1);
    EXPECT_EQ(outcome(still), "Conexão fechada");
}

TEST_F(BusTest, AWriteErrorIsPassedOnWithoutResendAndTheBusStaysOpen) {
    open();
    transport->writeError = std::make_exception_ptr(TransportError::write(5));
    auto failed = start(1, 3);
    EXPECT_EQ(outcome(failed), "Falha ao enviar: Input/output error");
    transport->writeError = nullptr;
    auto next = start(1);
    receive(frameOf(Fun::moduleGet, 1));
    EXPECT_EQ(outcome(next), "");
}

TEST_F(BusTest, TheCloseHandlerMayCloseAndReopen) {
    int calls = 0;
    time.run(bus->onClose([&](const std::exception_ptr&) {
        if (++calls > 1) return;
        spawn(time.executor(), bus->close());
        spawn(time.executor(), bus->open());
    }));
    time.run(bus->open());
    transport->onClose(nullptr);
    time.advance(0ms);
    EXPECT_EQ(calls, 1);
    auto request = start(1);
    receive(frameOf(Fun::moduleGet, 1));
    EXPECT_EQ(outcome(request), "");
}

TEST_F(BusTest, DroppingTheBusEndsItsRequestsAndTellsNobody) {
    open();
    auto waiting = start(1, 1);
    auto queued = start(2);
    const auto data = transport->onData;
    bus.reset();
    data(wire(frameOf(Fun::moduleGet, 2)));
    time.advance(0ms);
    EXPECT_EQ(outcome(waiting), "Conexão fechada");
    EXPECT_EQ(outcome(queued), "Conexão fechada");
    EXPECT_GT(transport->closes, 0);
    EXPECT_TRUE(closings.empty());
}

// The executor ends first, with requests waiting and queued: everything they hold goes with it
// (the leak checker watches).
TEST_F(BusTest, TheEndOfTheClockDropsWhatIsOutstanding) {
    auto clock = std::make_unique<Simulator::VirtualTime>();
    auto own = std::make_shared<ManualTransport>(clock->executor());
    auto dropped = std::make_shared<Bus>(own);
    clock->run(dropped->open());
    std::vector<Spawned<Frame>> requests;
    for (std::uint8_t address = 1; address <= 3; ++address)
        requests.push_back(
            spawn(clock->executor(), dropped->request(wire(frameOf(Fun::moduleGet, address)), 1s, 1,
                                                      [](const Frame&) { return true; })));
    clock->advance(1500ms);
    clock.reset();
    for (auto& request : requests)
        EXPECT_NE(failureOf([&] { request.get(); }), "");
}

TEST(BusErrorTest, ErrorsAreEqualByCaseAndCode) {
    EXPECT_EQ(BusError::timeout(5), BusError::timeout(5));
    EXPECT_FALSE(BusError::timeout(5) == BusError::timeout(6));
    EXPECT_FALSE(BusError::timeout(5) == BusError::rejected(5));
    EXPECT_EQ(BusError::rejected(6).description(), "A caixa recusou o comando (função 6)");
}

}  // namespace
}  // namespace Wendril
