#pragma once

#include <stdexcept>

namespace TAVO::toolkit {

/// What was asked for cannot be done. Nothing on the device was changed.
class BadRequest : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// The device, or what is connected to it, does not behave as it has to.
class Fault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What was read is not what it should be.
class Difference : public Fault {
public:
    using Fault::Fault;
};

} // namespace TAVO::toolkit
