#pragma once

#include <string>

/// Measurements of a window that is on the screen while the speakers play music. They print lines
/// "name value". Each needs a process of its own: a process measures its own CPU time and memory.
/// `port` leads to a chain of speakers.
namespace Bench {

/// From the start of the process to the first window, and the memory that it takes then.
void measureStart();

/// The window. Leaves the tone page in the folder `scene`, for the canvas.
void measureWindow(const std::string& port, const std::string& scene);

/// The least that a program with this toolkit takes: one opaque widget that shows a picture of the tone
/// page, with needles and bars that follow the same readings.
void measureCanvas(const std::string& port, const std::string& scene);

/// Frames of drags and edits, with the speakers' time at a stand.
void measureDrags();

/// Page changes and steps of resizing, with the speakers' time at a stand.
void measureChanges();

/// The window and the canvas for a tracer: print when they begin and end to move.
void traceWindow(const std::string& port);
void traceCanvas(const std::string& port, const std::string& scene);

}  // namespace Bench
