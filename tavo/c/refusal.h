#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include <tavo/c/tavo_c.h>

namespace TAVO::c {

/// A failure found by the C interface itself; nothing was sent.
class Refusal : public std::runtime_error {
public:
    Refusal(tavo_status reason, const std::string& message, std::int64_t index = -1)
        : std::runtime_error(message)
        , status(reason)
        , callIndex(index) {}

    tavo_status status;
    /// Position in a batch; -1 outside of one.
    std::int64_t callIndex;
};

/// @throws Refusal that names the argument if it is a null pointer.
inline void require(const void* argument, const char* name) {
    if (!argument)
        throw Refusal(TAVO_ERROR_ARGUMENT, std::string("'") + name + "' is NULL");
}

} // namespace TAVO::c
