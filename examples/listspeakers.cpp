// Prints the serial ports of the computer; with a port, the speakers on it and the gain of their first
// input.
#include "Wendril/client.hpp"

#include <cstdio>
#include <exception>
#include <memory>

using namespace Wendril;

// Runs on the queue. Only this task is suspended while it waits for a reply.
Task<void> printSpeakers(K7QClient client) {
    const ModuleRef gain = K7Q::module(K7Q::index(ModuleKind::gain, "In0", 0)).value();
    // An address without a speaker takes 200 ms; a whole chain has the addresses 1 to 16.
    const std::vector<DeviceInfo> speakers = co_await client.scan(1, 3);
    for (const DeviceInfo& speaker : speakers) {
        const ModuleValue value = co_await client.read(speaker.address, gain);
        std::printf("%d %s %s: %+.1f dB\n", speaker.address, speaker.model.c_str(), speaker.serial.c_str(),
                    value.as<GainValue>()->db);
    }
}

int main(int argc, char** argv) {
    if (argc < 2) {
        for (const std::string& port : SerialTransport::availablePorts())
            std::puts(port.c_str());
        return 0;
    }
    const auto queue = std::make_shared<SerialQueue>("speakers");
    const auto bus = std::make_shared<Bus>(std::make_shared<SerialTransport>(argv[1], K7Q::baudRate));
    try {
        spawn(queue, bus->open()).get();
        auto printing = spawn(queue, printSpeakers(K7QClient(bus, K7Q::productID)));
        while (!printing.waitFor(std::chrono::seconds(1)))
            std::fputs("waiting for the speakers\n", stderr);
        printing.get();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
