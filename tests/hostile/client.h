#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <tests/hostile/contents.h>
#include <tests/hostile/conversation.h>

namespace hostile {

/// "ok", or the exception's class and text as describe() has them.
std::string outcomeOf(const std::function<void()>& action);

/// What came of the calls of one exchange.
std::string stepText(const std::string& name, const std::string& outcome, std::size_t results,
                     const Contents& contents);

/// How often a client tries again whose connection holds bytes that it has not asked for.
inline constexpr std::size_t mostTries = 300;

/// What came of a call that was tried until it met no unexpected data, but not for ever.
std::string againText(std::size_t unexpected, const std::string& outcome);

/// Opens the device behind the port, makes the calls of the conversation and releases the device. Returns
/// what came of each step.
/// @param troubledPlace the place of the conversation after which the client tries until a call works, or
///                      fails with another exception than the one about unexpected data, and then releases
///                      the device.
std::vector<std::string> converse(const Conversation& conversation, int port,
                                  std::optional<std::size_t> troubledPlace);

} // namespace hostile
