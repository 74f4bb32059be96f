// Prints the levels of the first speaker on a serial port, from the event loop of a Qt program.
#include "Wendril/client.hpp"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>

#include <cstdio>
#include <exception>
#include <memory>
#include <thread>

using namespace Wendril;

class Call final : public QEvent {
public:
    explicit Call(UniqueFunction function)
        : QEvent(User)
        , function(std::move(function)) {}

    UniqueFunction function;
};

// The event loop of the thread that creates it, as an executor.
class QtExecutor final : public QObject, public Executor {
public:
    // From any thread.
    void post(UniqueFunction function) override {
        QCoreApplication::postEvent(this, new Call(std::move(function)));
    }

    // A timer must be started on the thread of its receiver. Qt copies the function that it calls
    // later, so the function travels by shared pointer.
    void postAfter(Duration delay, UniqueFunction function) override {
        post([this, delay, function = std::make_shared<UniqueFunction>(std::move(function))] {
            QTimer::singleShot(std::chrono::ceil<std::chrono::milliseconds>(delay), Qt::PreciseTimer, this,
                               [function] { (*function)(); });
        });
    }

    bool isCurrent() const override { return std::this_thread::get_id() == thread; }

    TimePoint now() const override { return std::chrono::steady_clock::now(); }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        static_cast<Call*>(event)->function();
        return true;
    }

private:
    const std::thread::id thread = std::this_thread::get_id();
};

// Resumes on the event loop after every `co_await`, so it may use widgets and models.
Task<void> printLevels(std::shared_ptr<Bus> bus) {
    const K7QClient client(bus, K7Q::productID);
    try {
        co_await bus->open();
        for (int reading = 0; reading < 3; ++reading) {
            const std::vector<float> levels = co_await client.meters(1);
            for (const float level : levels)
                std::printf("%6.1f", level);
            std::puts(" dB");
            co_await sleepFor(std::chrono::milliseconds(60));
        }
        co_await bus->close();
        QCoreApplication::exit(0);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        QCoreApplication::exit(1);
    }
}

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc < 2) return 2;
    const auto bus = std::make_shared<Bus>(std::make_shared<SerialTransport>(argv[1], K7Q::baudRate));
    spawn(std::make_shared<QtExecutor>(), printLevels(bus));
    return QCoreApplication::exec();
}
