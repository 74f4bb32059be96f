#pragma once

#include "tests/chain.hpp"

#include <functional>
#include <utility>

namespace Tests {

using namespace Wendril;

inline Bytes wire(const Frame& frame) { return FrameCodec::encode(frame, false, {}); }

/// A far end that the test plays: it answers requests as `answer` says, which may throw, and the test
/// may call `onData` and `onClose` itself.
class ScriptedTransport final : public Transport {
public:
    explicit ScriptedTransport(std::shared_ptr<Executor> executor)
        : executor(std::move(executor)) {}

    std::string name() const override { return "scripted"; }
    void open(OnData data, OnClose close) override {
        onData = std::move(data);
        onClose = std::move(close);
    }
    void cancellableOpen(OnData data, OnClose close, std::stop_token stop) override {
        whileOpening(stop);
        open(std::move(data), std::move(close));
    }
    void write(ByteView data) override {
        written.emplace_back(data.begin(), data.end());
        for (const Frame& request : FrameParser().feed(data))
            for (const Frame& reply : answer(request)) {
                Bytes bytes = wire(reply);
                if (damage) std::exchange(damage, nullptr)(bytes);
                onData(bytes);
            }
    }
    void close() override { ++closes; }
    std::shared_ptr<Executor> queue() const override { return executor; }

    using Answer = std::function<std::vector<Frame>(const Frame& request)>;
    Answer answer = [](const Frame&) { return std::vector<Frame>{}; };
    std::function<void(Bytes&)> damage;  // done to the next reply
    std::function<void(const std::stop_token&)> whileOpening = [](const std::stop_token&) {};
    const std::shared_ptr<Executor> executor;
    OnData onData;
    OnClose onClose;
    std::vector<Bytes> written;
    int closes = 0;
};

/// A bus and a client with such a far end, in virtual time; closed without an `answer`.
struct Scripted {
    explicit Scripted(ScriptedTransport::Answer answer = {}) {
        if (!answer) return;
        transport->answer = std::move(answer);
        run(bus->open());
    }

    template <class T>
    T run(Task<T> task) {
        return time.run(std::move(task));
    }

    Simulator::VirtualTime time;
    std::shared_ptr<ScriptedTransport> transport = std::make_shared<ScriptedTransport>(time.executor());
    std::shared_ptr<Bus> bus = std::make_shared<Bus>(transport);
    K7QClient client{bus, K7Q::productID};
};

}  // namespace Tests
