#pragma once

#include <unistd.h>

namespace Wendril {

/// Owns an open descriptor and closes it. Everything that reads, writes or watches the descriptor shares
/// ownership. So it is closed by the last of them, and the system cannot give its number to another file
/// while a call still uses it.
class Descriptor {
public:
    explicit Descriptor(int number)
        : number(number) {}
    ~Descriptor() {
        if (number >= 0) ::close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int number;
};

}  // namespace Wendril
