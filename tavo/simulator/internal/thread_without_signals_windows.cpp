#include <tavo/simulator/internal/thread_without_signals.h>

#include <utility>

namespace TAVO::simulator {

// The system starts a separate thread for each signal.
std::thread threadWithoutSignals(std::function<void()> function) { return std::thread(std::move(function)); }

} // namespace TAVO::simulator
