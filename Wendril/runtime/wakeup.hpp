#pragma once

namespace Wendril {

/// A pipe that ends the `poll` of a thread. `raise` may be called from any thread; `clear` takes back all
/// calls before it.
class Wakeup {
public:
    /// Throws std::system_error when the process has no descriptors left.
    Wakeup();
    ~Wakeup();
    Wakeup(const Wakeup&) = delete;
    Wakeup& operator=(const Wakeup&) = delete;

    /// Readable while raised.
    int descriptor() const { return readEnd; }

    void raise() const;
    void clear() const;

private:
    int readEnd = -1;
    int writeEnd = -1;
};

}  // namespace Wendril
