#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace TAVO::jtag::svf {

/// A file that cannot be played: "FILE:LINE: what is wrong".
class SvfError : public std::runtime_error {
public:
    SvfError(std::string_view file, std::size_t line, std::string_view problem);
};

} // namespace TAVO::jtag::svf
