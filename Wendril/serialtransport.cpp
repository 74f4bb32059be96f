#include "Wendril/runtime/descriptor.hpp"
#include "Wendril/transport.hpp"

#include <fcntl.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace Wendril {

namespace {

constexpr struct {
    int bitsPerSecond;
    speed_t code;
} speeds[] = {
    {9600, B9600},     {19200, B19200},   {38400, B38400},   {57600, B57600},
    {115200, B115200}, {230400, B230400}, {460800, B460800}, {921600, B921600},
};

std::optional<speed_t> speedCode(int bitsPerSecond) {
    for (const auto& speed : speeds)
        if (speed.bitsPerSecond == bitsPerSecond) return speed.code;
    return std::nullopt;
}

// 0, or the errno of the step that failed.
int configure(int descriptor, int baudRate) {
    termios settings{};
    if (::tcgetattr(descriptor, &settings) != 0) return errno;
    ::cfmakeraw(&settings);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARENB | CREAD | CLOCAL | CRTSCTS);
    settings.c_cflag |= CS8 | CREAD | CLOCAL;
    const auto speed = speedCode(baudRate);
    if (!speed) return EINVAL;
    if (::cfsetispeed(&settings, *speed) != 0 || ::cfsetospeed(&settings, *speed) != 0) return errno;
    if (::tcsetattr(descriptor, TCSANOW, &settings) != 0) return errno;
    return 0;
}

// In this mode a driver passes on each received byte at once; FTDI's otherwise collects them for 16 ms.
// True when the mode has been changed. A driver that has no such mode refuses.
bool setLowLatency(int descriptor, bool on) {
    serial_struct settings{};
    if (::ioctl(descriptor, TIOCGSERIAL, &settings) != 0) return false;
    const bool isOn = (settings.flags & ASYNC_LOW_LATENCY) != 0;
    if (isOn == on) return false;
    settings.flags ^= ASYNC_LOW_LATENCY;
    return ::ioctl(descriptor, TIOCSSERIAL, &settings) == 0;
}

// Waits for room in the output buffer, at most half a millisecond: `close` may end the line meanwhile.
void waitForRoom(int descriptor) {
    constexpr timespec pause{0, 500'000};
    pollfd entry{descriptor, POLLOUT, 0};
    ::ppoll(&entry, 1, &pause, nullptr);
}

bool tryAgain(int error) { return error == EAGAIN || error == EINTR; }

// Why a line reads as the end of file: 0 when it has simply ended. A terminal whose other side has
// hung up reads as EIO or as the end of file, depending on the moment; in the latter case asking for
// its settings fails with the reason.
int hangUpError(int descriptor) {
    termios settings{};
    return ::tcgetattr(descriptor, &settings) == 0 ? 0 : errno;
}

bool isSerialPort(std::string_view name) {
    constexpr std::array<std::string_view, 3> adapters{"cu.", "ttyUSB", "ttyACM"};
    constexpr std::array<std::string_view, 3> otherUses{"Bluetooth", "BLTH", "debug-console"};
    return std::ranges::any_of(adapters, [name](auto prefix) { return name.starts_with(prefix); }) &&
           std::ranges::none_of(otherUses, [name](auto part) { return name.find(part) != name.npos; });
}

}  // namespace

// The open line. The transport owns it; the watch on its descriptor refers to it weakly.
class SerialTransport::Line {
public:
    void start(std::shared_ptr<Descriptor> opened, SerialQueue& queue, SerialQueue::Ready ready) {
        const std::scoped_lock lock(mutex);
        descriptor = std::move(opened);
        madeFast = setLowLatency(descriptor->number, true);
        watch = queue.watch(descriptor->number, POLLIN, std::move(ready));
    }

    std::shared_ptr<const Descriptor> current() {
        const std::scoped_lock lock(mutex);
        return descriptor;
    }

    // The descriptor itself is closed on the queue, by the end of the watch, which holds the last
    // reference to it. False when the line was closed already.
    bool stop(SerialQueue& queue) {
        const std::scoped_lock lock(mutex);
        if (!descriptor) return false;
        // The mode belongs to the port and outlives this program.
        if (madeFast) setLowLatency(descriptor->number, false);
        // A terminal stays exclusive until its last descriptor is closed, of any process. Without this
        // nobody could open it again while another program holds one.
        ::ioctl(descriptor->number, TIOCNXCL);
        queue.unwatch(watch);
        descriptor.reset();
        return true;
    }

private:
    std::mutex mutex;
    std::shared_ptr<const Descriptor> descriptor;  // null while closed
    SerialQueue::WatchId watch = 0;
    bool madeFast = false;  // by this line
};

SerialTransport::SerialTransport(std::string path, int baudRate)
    : path(std::move(path))
    , baudRate(baudRate)
    , serialQueue(std::make_shared<SerialQueue>("dsp.serial"))
    , line(std::make_shared<Line>()) {}

SerialTransport::~SerialTransport() { close(); }

std::vector<std::string> SerialTransport::availablePorts(const std::string& directory) {
    std::vector<std::string> names;
    std::error_code unreadable;
    std::filesystem::directory_iterator entry(directory, unreadable);
    for (; !unreadable && entry != std::filesystem::directory_iterator(); entry.increment(unreadable)) {
        std::string name = entry->path().filename().string();
        if (isSerialPort(name)) names.push_back(std::move(name));
    }
    std::ranges::sort(names);
    for (std::string& name : names)
        name.insert(0, directory + "/");
    return names;
}

std::string SerialTransport::name() const { return path.substr(path.find_last_of('/') + 1); }

void SerialTransport::open(OnData onData, OnClose onClose) {
    close();
    const auto descriptor =
        std::make_shared<Descriptor>(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (descriptor->number < 0) throw TransportError::open(path, errno);
    if (const int error = configure(descriptor->number, baudRate))
        throw TransportError::configure(path, error);
    ::ioctl(descriptor->number, TIOCEXCL);
    ::tcflush(descriptor->number, TCIOFLUSH);

    // The handler holds the queue weakly, since the queue holds the handler.
    auto read = [descriptor, path = path, weakLine = std::weak_ptr(line),
                 weakQueue = std::weak_ptr(serialQueue), onData = std::move(onData),
                 onClose = std::move(onClose)](short) {
        const auto line = weakLine.lock();
        const auto queue = weakQueue.lock();
        if (!line || !queue || line->current() != descriptor) return;
        std::array<std::uint8_t, 1024> bytes;
        const ssize_t count = ::read(descriptor->number, bytes.data(), bytes.size());
        if (count > 0) return onData(ByteView(bytes).first(static_cast<std::size_t>(count)));
        const int error = count == 0 ? hangUpError(descriptor->number) : errno;
        if (tryAgain(error) || !line->stop(*queue)) return;
        onClose(error == 0 ? nullptr : std::make_exception_ptr(TransportError::open(path, error)));
    };
    line->start(descriptor, *serialQueue, std::move(read));
}

void SerialTransport::write(ByteView data) {
    const auto descriptor = line->current();
    if (!descriptor) throw TransportError::notOpen();
    while (!data.empty()) {
        const ssize_t count = ::write(descriptor->number, data.data(), data.size());
        if (count > 0) {
            data = data.subspan(static_cast<std::size_t>(count));
            continue;
        }
        const int error = count == 0 ? EAGAIN : errno;
        if (!tryAgain(error)) throw TransportError::write(error);
        waitForRoom(descriptor->number);
        if (line->current() != descriptor) throw TransportError::notOpen();
    }
}

void SerialTransport::close() { line->stop(*serialQueue); }

std::shared_ptr<Executor> SerialTransport::queue() const { return serialQueue; }

}  // namespace Wendril
