#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include <tavo/client.h>

namespace TAVO::cli {

/// How long the device may be busy with these calls themselves: it sleeps and waits on purpose, moves many
/// bytes over a slow bus, or stores an image. A time limit begins behind that. Generous, and 0 for calls that
/// are answered at once. Units that the device defines are those of the simulated modules.
std::chrono::milliseconds busyTime(const std::vector<std::shared_ptr<Method>>& methods);

} // namespace TAVO::cli
