#pragma once

#include <memory>

#include <tavo/c/open_device.h>
#include <tavo/c/reply.h>

namespace TAVO::c {

/// The objects and their methods, for tavo_tree_json().
/// @throws Refusal if the device is closed; what Device::multicall throws.
std::unique_ptr<tavo_reply> tree(const tavo_device& handle);

} // namespace TAVO::c
