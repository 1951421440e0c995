#pragma once

#include <stdexcept>

namespace TAVO::config {

/// What the user wrote, in arguments, environment or file, cannot be used.
class Fault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace TAVO::config
