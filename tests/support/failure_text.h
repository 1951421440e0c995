#pragma once

#include <exception>
#include <string>
#include <typeinfo>

namespace support {

/// The text of the exception that the action throws, which must be of exactly that class.
template <class Exception, class Action>
std::string failureOf(Action&& action) {
    try {
        action();
    } catch (const std::exception& failure) {
        if (typeid(failure) == typeid(Exception))
            return failure.what();
        return std::string("another exception, ") + typeid(failure).name() + ": " + failure.what();
    }
    return "no exception";
}

} // namespace support
