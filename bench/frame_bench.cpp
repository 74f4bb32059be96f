#include "Wendril/frame.hpp"

#include <benchmark/benchmark.h>

#include <random>

namespace {

using namespace Wendril;

constexpr std::size_t streamBytes = 1 << 20;

Bytes repeated(const Bytes& piece) {
    Bytes stream;
    stream.reserve(streamBytes + piece.size());
    while (stream.size() < streamBytes)
        stream.insert(stream.end(), piece.begin(), piece.end());
    return stream;
}

const Frame ping(9, 1, Fun::linkStatus, Bytes(8));

Bytes clean() { return repeated(FrameCodec::encode(ping, false, {})); }

// Frames with noise between them, one in eight damaged.
Bytes noisy() {
    std::mt19937 random(1);
    Bytes stream;
    while (stream.size() < streamBytes) {
        Bytes frame = FrameCodec::encode(ping, false, {});
        if (random() % 8 == 0) frame[random() % frame.size()] ^= 0x10;
        for (std::size_t n = random() % 8; n > 0; --n)
            stream.push_back(static_cast<std::uint8_t>(random()));
        stream.insert(stream.end(), frame.begin(), frame.end());
    }
    return stream;
}

Bytes onlyHeads() { return Bytes(streamBytes, FrameCodec::head); }

// Each of these heads announces the longest frame, and none has its checksum.
Bytes falseHeads() { return repeated({0x55, 9, 1, 5, 0, 0, 0, 0, 64, 0, 0, 0}); }

using Stream = Bytes (*)();

// Bytes arrive as a transport delivers them, or all at once.
void parseIntoList(benchmark::State& state, Stream make, std::size_t chunk) {
    const Bytes stream = make();
    FrameParser parser;
    for (auto _ : state)
        for (std::size_t at = 0; at < stream.size(); at += chunk)
            benchmark::DoNotOptimize(
                parser.feed(ByteView(stream).subspan(at, std::min(chunk, stream.size() - at))));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}

void parseIntoSink(benchmark::State& state, Stream make) {
    const Bytes stream = make();
    FrameParser parser;
    for (auto _ : state)
        parser.feed(stream, [](Frame& frame) { benchmark::DoNotOptimize(frame); });
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(stream.size()));
}

void encode(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(FrameCodec::encode(ping, false, {}));
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(parseIntoSink, clean, clean);
BENCHMARK_CAPTURE(parseIntoSink, noisy, noisy);
BENCHMARK_CAPTURE(parseIntoList, clean, clean, 4096);
BENCHMARK_CAPTURE(parseIntoList, cleanAtOnce, clean, streamBytes);
BENCHMARK_CAPTURE(parseIntoList, noisy, noisy, 4096);
BENCHMARK_CAPTURE(parseIntoList, megabyteOfHeads, onlyHeads, streamBytes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(parseIntoList, megabyteOfFalseHeads, falseHeads, streamBytes)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(encode);

}  // namespace
