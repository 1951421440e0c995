#pragma once

#include <cstdint>
#include <span>
#include <string>

#include <tavo/trace/exchange.h>
#include <tavo/trace/names.h>

namespace TAVO::trace {

/// How a request differs from a recorded one, in words that name the first call that differs and what came in
/// its place; empty if it does not. Lock ids, secret fields and the names of users may differ.
/// @param request complete.
std::string differenceOf(const Exchange& recorded, std::span<const std::uint8_t> request, const Names& names);

} // namespace TAVO::trace
