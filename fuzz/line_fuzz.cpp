// The client and the bus on a line that sends anything at any time, in virtual time.
#include "fuzz/check.hpp"

#include "Wendril/client.hpp"
#include "app/model/words.hpp"
#include "simulator/board.hpp"
#include "simulator/requests.hpp"
#include "simulator/virtualtime.hpp"

#include <chrono>
#include <exception>
#include <memory>
#include <utility>

using namespace Wendril;
using namespace std::chrono_literals;

namespace {

// The input as a script: one step for each attempt of the host.
class Script {
public:
    explicit Script(ByteView bytes)
        : rest(bytes) {}

    std::uint8_t next() {
        if (rest.empty()) return 0;
        const std::uint8_t byte = rest.front();
        rest = rest.subspan(1);
        return byte;
    }

    Bytes next(std::size_t count) {
        const ByteView taken = rest.first(std::min(count, rest.size()));
        rest = rest.subspan(taken.size());
        return {taken.begin(), taken.end()};
    }

private:
    ByteView rest;
};

class HostileTransport final : public Transport {
public:
    HostileTransport(std::shared_ptr<Executor> executor, Script& script)
        : executor(std::move(executor))
        , script(script) {}

    std::string name() const override { return "hostile"; }
    std::shared_ptr<Executor> queue() const override { return executor; }
    void open(OnData data, OnClose closed) override {
        onData = std::make_shared<OnData>(std::move(data));
        onClose = std::move(closed);
    }
    void close() override { onData = nullptr; }

    void write(ByteView data) override {
        ++writes;
        const auto reading = reader.feed(data);
        Fuzz::check(reading.faults.empty() && reading.requests.size() == 1);
        Bytes reply;
        if (const auto answer = board.answer(reading.requests.front(), 0))
            reply = FrameCodec::encode(*answer, false, {});
        answer(std::move(reply));
    }

    std::size_t writes = 0;

private:
    // Noise of any length, the reply, the reply with a wrong byte, or the reply in two pieces.
    void answer(Bytes reply) {
        const std::uint8_t kind = script.next();
        const Duration delay = script.next() * 4ms;
        const std::size_t place = reply.empty() ? 0 : script.next() % reply.size();
        switch (kind % 6) {
        case 0:
            return send(script.next(place), delay);
        case 1:
            return send(std::move(reply), delay);
        case 2:
            if (!reply.empty()) reply[place] ^= script.next();
            return send(std::move(reply), delay);
        case 3:
            send(Bytes(reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(place)), delay);
            return send(Bytes(reply.begin() + static_cast<std::ptrdiff_t>(place), reply.end()),
                        delay + script.next() * 1ms);
        case 4:
            if (script.next() % 8 == 0) executor->post([closed = onClose] { closed(nullptr); });
            return;
        default:
            throw TransportError::write(5);
        }
    }

    void send(Bytes bytes, Duration delay) {
        executor->postAfter(delay, [data = std::weak_ptr(onData), bytes = std::move(bytes)] {
            if (const auto alive = data.lock()) (*alive)(bytes);
        });
    }

    const std::shared_ptr<Executor> executor;
    Script& script;
    std::shared_ptr<OnData> onData;
    OnClose onClose;
    Simulator::RequestReader reader;
    Simulator::Board board{1, 1, 1};
};

Task<void> everything(K7QClient client) {
    const ModuleRef band = K7Q::module(7).value();
    co_await client.assignVerified(2);
    co_await client.scan(1, 2);
    const ModuleValue value = co_await client.read(1, band);
    co_await client.write(1, band, value);
    co_await client.meters(1);
    co_await client.presetInfo(1);
    co_await client.presetName(1, 3);
    co_await client.savePreset(1, 3, "Show");
    co_await client.readAll(1, nullptr);
}

// Goes on after each failure with the next operation.
void run(ByteView bytes) {
    Script script(bytes);
    Simulator::VirtualTime time;
    const auto transport = std::make_shared<HostileTransport>(time.executor(), script);
    const auto bus = std::make_shared<Bus>(transport);
    time.run(bus->open());
    const K7QClient client(bus, K7Q::productID);
    try {
        time.run(everything(client));
    } catch (const std::exception& error) {
        Fuzz::check(*error.what() != 0);
    }
    Fuzz::check(time.elapsed() < 1h);
    for (const LineRecord::Entry& entry : bus->record->summary().frames)
        Corvane::meaningOf(entry);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    run(ByteView(data, size));
    return 0;
}
