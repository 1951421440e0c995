#pragma once

#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/simulator/models/jtag_chain.h>

namespace TAVO::simulator {

/// The chain that the option "taps" of a "jtag" describes.
/// @throws std::invalid_argument that names the place in the list and what is wrong.
std::vector<TapDescription> readTaps(const nlohmann::json& list);

} // namespace TAVO::simulator
