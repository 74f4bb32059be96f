#include "bench/modbuspeer.hpp"

#include "Wendril/client.hpp"
#include "tests/simulatorprocess.hpp"

#include <benchmark/benchmark.h>
#include <modbus.h>

#include <array>
#include <memory>
#include <string>

namespace {

using namespace Wendril;

constexpr int roundTripsPerRun = 500;

template <class T>
T run(const std::shared_ptr<Executor>& executor, Task<T> task) {
    return spawn(executor, std::move(task)).get();
}

Task<void> readOften(K7QClient client, int times) {
    const ModuleRef gain = K7Q::module(1).value();
    for (int i = 0; i < times; ++i) {
        auto reading = client.read(1, gain);
        co_await std::move(reading);
    }
}

// What the bus notes down of one round trip, to be compared with the round trips below.
void record(benchmark::State& state) {
    LineRecord record;
    const Frame reply(K7Q::productID, 1, Fun::moduleGet, Bytes(12));
    const Bytes request = FrameCodec::encode(reply, false, {});
    TimePoint at;
    for (auto _ : state) {
        at += std::chrono::milliseconds(1);
        record.wasSent(at, request, false);
        record.wasReceived(at, reply);
        record.wasReply(1, std::chrono::milliseconds(1));
        record.droppedBytes(0);
    }
}

void exchange(benchmark::State& state, const std::shared_ptr<Transport>& transport, bool onOwnThread) {
    const auto bus = std::make_shared<Bus>(transport);
    const K7QClient client(bus, K7Q::productID);
    const std::shared_ptr<Executor> caller =
        onOwnThread ? std::make_shared<SerialQueue>("caller") : bus->executor;
    run(bus->executor, bus->open());
    for (auto _ : state)
        run(caller, readOften(client, roundTripsPerRun));
    state.SetItemsProcessed(state.iterations() * roundTripsPerRun);
    run(bus->executor, bus->close());
}

// The caller on the line's own queue, as in the command line, or on a thread of its own, as the
// window is.
void roundTripSerial(benchmark::State& state, bool onOwnThread) {
    const Tests::SimulatorProcess simulator({});
    exchange(state, std::make_shared<SerialTransport>(simulator.path(), K7Q::baudRate), onOwnThread);
}

void roundTripTcp(benchmark::State& state, bool onOwnThread) {
    const Tests::SimulatorProcess simulator({"--tcp", "0"});
    exchange(
        state,
        std::make_shared<TCPTransport>("127.0.0.1", static_cast<std::uint16_t>(std::stoi(simulator.port()))),
        onOwnThread);
}

void exchangeByModbus(benchmark::State& state, modbus_t* context) {
    modbus_set_slave(context, ModbusPeer::server);
    if (modbus_connect(context) != 0) return state.SkipWithError(modbus_strerror(errno));
    std::array<std::uint16_t, ModbusPeer::registers> values{};
    for (auto _ : state)
        for (int i = 0; i < roundTripsPerRun; ++i)
            if (modbus_read_registers(context, 0, ModbusPeer::registers, values.data()) < 0)
                return state.SkipWithError(modbus_strerror(errno));
    state.SetItemsProcessed(state.iterations() * roundTripsPerRun);
    modbus_close(context);
    modbus_free(context);
}

void roundTripSerialModbus(benchmark::State& state) {
    exchangeByModbus(state, modbus_new_rtu(ModbusPeer::serialPath().c_str(), 115200, 'N', 8, 1));
}

void roundTripTcpModbus(benchmark::State& state) {
    exchangeByModbus(state, modbus_new_tcp("127.0.0.1", ModbusPeer::tcpPort()));
}

// One speaker at 115200 8N1: as a ratio to the time its 6160 bytes take on the wire.
void readAllPaced(benchmark::State& state) {
    constexpr double wireSeconds = 6160 * 10 / 115200.0;
    const Tests::SimulatorProcess simulator({"--pace"});
    const auto bus =
        std::make_shared<Bus>(std::make_shared<SerialTransport>(simulator.path(), K7Q::baudRate));
    const K7QClient client(bus, K7Q::productID);
    run(bus->executor, bus->open());
    for (auto _ : state)
        run(bus->executor, client.readAll(1, nullptr));
    state.counters["wire_times"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * wireSeconds,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    run(bus->executor, bus->close());
}

BENCHMARK(record);
BENCHMARK(roundTripSerialModbus)->UseRealTime();
BENCHMARK_CAPTURE(roundTripSerial, onTheLinesQueue, false)->UseRealTime();
BENCHMARK_CAPTURE(roundTripSerial, fromAnotherThread, true)->UseRealTime();
BENCHMARK(roundTripTcpModbus)->UseRealTime();
BENCHMARK_CAPTURE(roundTripTcp, onTheLinesQueue, false)->UseRealTime();
BENCHMARK_CAPTURE(roundTripTcp, fromAnotherThread, true)->UseRealTime();
BENCHMARK(readAllPaced)->Iterations(3)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
