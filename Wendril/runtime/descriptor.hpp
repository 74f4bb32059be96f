#pragma once

#include <unistd.h>

namespace Wendril {

/// Owns an open descriptor and closes it. Shared by all who read, write or watch it, it is closed
/// by the last of them, so its number is never used again under a running call.
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
