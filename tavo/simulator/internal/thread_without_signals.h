#pragma once

#include <functional>
#include <thread>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// Starts a thread with all signals blocked: they belong to the program's own threads.
TAVO_SIMULATOR_API std::thread threadWithoutSignals(std::function<void()> function);

} // namespace TAVO::simulator
