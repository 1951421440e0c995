#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <tavo/jtag/svf/planner.h>

namespace TAVO::jtag::svf {

/// A scan captured something else than its file says.
class Mismatch : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The first bit of these, among those of the part, that is not as it must be.
std::optional<std::size_t> firstWrongBit(const Check::Part& part, const BitString& captured);

/// @param file how the message calls the file.
/// @throws Mismatch that names the line, what came, what was expected under which mask, and the first wrong
/// bit; of long data the vicinity of that bit.
void insistOn(const Check& check, const BitString& captured, std::string_view file);

} // namespace TAVO::jtag::svf
