#pragma once

#include <functional>
#include <thread>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// Starts a thread that receives no signals: they belong to the threads of the program.
TAVO_SIMULATOR_API std::thread threadWithoutSignals(std::function<void()> function);

} // namespace TAVO::simulator
