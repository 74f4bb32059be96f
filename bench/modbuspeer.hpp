#pragma once

#include <cstdint>
#include <string>

/// A register server on a well-kept RS-485 master library, in processes of its own: what this
/// project's exchange is measured against. `start` must come before the first thread.
namespace ModbusPeer {

void start();
void stop();

const std::string& serialPath();
std::uint16_t tcpPort();

constexpr int server = 1;
constexpr int registers = 10;  // a reply of 25 bytes; that of a gain has 28

}  // namespace ModbusPeer
