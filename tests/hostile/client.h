#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace hostile {

/// "ok", or the exception's class and text as describe() has them.
std::string outcomeOf(const std::function<void()>& action);

/// Opens the device behind the port, makes the calls of the conversation and releases the device. Returns
/// what came of each step.
/// @param troubledPlace the place of the conversation after which the client tries until a call works, or
///                      fails with another exception than the one about unexpected data, and then releases
///                      the device; none when it is beyond the conversation.
std::vector<std::string> converse(int port, std::size_t troubledPlace);

} // namespace hostile
