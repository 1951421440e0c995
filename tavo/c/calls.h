#pragma once

#include <memory>
#include <span>

#include <tavo/c/open_device.h>
#include <tavo/c/reply.h>

/// Calls written in JSON.
namespace TAVO::c {

/// What a function that makes calls is given.
struct CallInput {
    /// The JSON.
    const char* text;
    const tavo_bytes* blocks;
    std::size_t blockCount;
    std::uint32_t flags;
};

/// @throws Refusal for wrong input, with nothing sent; what Device::call throws.
std::unique_ptr<tavo_reply> call(const tavo_device& handle, const CallInput& input);

/// @param[out] reply the answers; if the exchange fails, those that arrived, empty if there are none.
/// @throws Refusal for wrong input, with nothing sent; what Device::multicall throws.
void batch(const tavo_device& handle, const CallInput& input, std::unique_ptr<tavo_reply>& reply);

} // namespace TAVO::c
