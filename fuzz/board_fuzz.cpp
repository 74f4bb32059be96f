// A simulated board, asked for anything that the protocol allows.
#include "fuzz/check.hpp"

#include "Wendril/profile.hpp"
#include "simulator/board.hpp"
#include "simulator/requests.hpp"

#include <algorithm>

using namespace Wendril;

// The input is a list of requests: function, words of payload, payload.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Simulator::Board board(1, 1, 1);
    for (ByteView rest(data, size); rest.size() >= 2;) {
        const std::size_t bytes = std::min<std::size_t>(std::size_t{rest[1]} % 16 * 4, rest.size() - 2);
        const ByteView payload = rest.subspan(2, bytes);
        const Frame request(K7Q::productID, 1, rest[0], 0, 0, Bytes(payload.begin(), payload.end()));
        rest = rest.subspan(2 + bytes);
        if (Simulator::faultOf(request)) continue;
        const auto reply = board.answer(request, 1);
        Fuzz::check(reply && Simulator::answers(*reply, request));
        Fuzz::check(FrameParser().feed(FrameCodec::encode(*reply, false, {})).size() == 1);
        Simulator::meaningOf(*reply, false);
    }
    for (const ModuleRef& module : K7Q::modules())
        if (module.kind != ModuleKind::vu) board.value(module.index);
    return 0;
}
