#pragma once

#include <cstdint>
#include <string>

/// Plays a recorded device: answers the requests of the recording with its replies, in their order, as long
/// as they are the same. Prints its address on standard output. Returns the exit status: 0 once everything
/// was asked and the client has gone, or at a signal; 1 at the first request that differs, which it names on
/// standard error.
/// @throws std::invalid_argument for a file that cannot be replayed.
int replay(const std::string& file, const std::string& host, std::uint16_t port, bool isQuiet);
