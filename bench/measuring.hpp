#pragma once

#include <functional>
#include <string>
#include <vector>

/// What a window takes, for programs that print lines "name value".
namespace Bench {

void print(const std::string& name, double value);

double median(std::vector<double> values);

/// CPU time of all threads of this process, since its start.
double cpuSeconds();

double residentMegabytes();

/// CPU time that `action` takes.
double cpuMilliseconds(const std::function<void()>& action);

/// Percent of a core that this process takes while the event loop runs: the median of some seconds.
double coreShare();

double paintEventsPerSecond();

/// Runs `open`, then the event loop until a widget has been painted.
void awaitPaint(const std::function<void()>& open);

/// Ends the threads of the pool that the toolkit gives large fills to.
void emptyPool();

/// Prints in Unix time when `action` begins and ends, for a tracer.
void traced(const std::string& name, const std::function<void()>& action);

/// The event loop, while what is seen changes by itself.
void watch();

}  // namespace Bench
