#pragma once

#include <string>
#include <string_view>

namespace TAVO {
class Method;
}

namespace TAVO::cli {

/// What the executed call's return code means; empty for a code without a known meaning. The device defines
/// its codes: these meanings are those of the simulated modules.
std::string_view meaningOfReturnCode(const Method& method);

/// The return code of the executed call, followed by ": " and its meaning if that is known.
std::string returnCodeText(const Method& method);

/// @throws Failure (refused) when the executed call's return code is not 0.
void requireSuccess(const Method& method);

} // namespace TAVO::cli
