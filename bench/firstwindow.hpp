#pragma once

/// With this argument the program only shows the window, once; for the measurement of its start.
constexpr const char* firstWindowOption = "--first-window";
int showFirstWindow(int argc, char** argv);
