#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace TAVO::cli {

/// The addresses of a host, in the order in which the system wants them tried. While an InterruptWatch
/// exists, signals end the wait.
/// @throws NetworkError if there are none, or it takes longer; Interrupted.
std::vector<std::string> addressesOf(const std::string& host, int port, std::chrono::milliseconds longest);

} // namespace TAVO::cli
