#pragma once

#include <cmath>
#include <cstdlib>
#include <string>

#include <CLI/CLI.hpp>

namespace TAVO::cli {

/// CLI::Range lets "nan" pass: it is neither below nor above anything.
inline CLI::Validator numberFrom(double lowest, double highest) {
    const CLI::Range range(lowest, highest);
    const auto check = [range](std::string& text) {
        if (std::isnan(std::strtod(text.c_str(), nullptr)))
            return "Value " + text + " is no number";
        return range(text);
    };
    return {check, range.get_description()};
}

} // namespace TAVO::cli
