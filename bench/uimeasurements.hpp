#pragma once

/// Adds first paint, repaint and meter update of every page to the measurements.
void addPainting();

/// With this argument the program only shows the window, once; for the measurement of its start.
constexpr const char* firstWindowOption = "--first-window";
int showFirstWindow(int argc, char** argv);
