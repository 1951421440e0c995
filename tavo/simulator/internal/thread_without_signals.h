#pragma once

#include <functional>
#include <thread>

#include <tavo/client/export.h>

namespace TAVO::simulator {

/// Starts a thread that receives no signals: they belong to the threads of the program.
TAVO_API std::thread threadWithoutSignals(std::function<void()> function);

} // namespace TAVO::simulator
