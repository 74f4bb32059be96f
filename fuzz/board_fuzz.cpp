// A simulated board and the line before it, asked for anything.
#include "fuzz/check.hpp"

#include "Wendril/profile.hpp"
#include "simulator/line.hpp"
#include "simulator/virtualtime.hpp"

#include <memory>

using namespace Wendril;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteView bytes(data, size);
    Simulator::VirtualTime time;
    const auto line = std::make_shared<Simulator::Line>(time.executor(), Simulator::LineOptions{.boards = 2});
    FrameParser parser;
    line->connect([&parser](ByteView reply) {
        // Two boards at one address spoil each other's reply.
        Fuzz::check(parser.feed(reply).size() <= 1);
    });
    line->receive(bytes);
    time.runUntilIdle();
    for (const std::size_t position : {0U, 1U})
        for (const ModuleRef& module : K7Q::modules())
            if (module.kind != ModuleKind::vu) line->board(position).value(module.index);
    return 0;
}
