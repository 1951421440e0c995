#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include <pybind11/pybind11.h>

#include <tavo/client/wire/error_facts.h>

namespace TAVO::python {

namespace py = pybind11;

/// What is known of a failed call, independent of Python: exceptions made from it can be raised again and
/// again.
struct Failure {
    /// The name of the exception's class in Python.
    std::string kind;
    std::string text;
    ErrorFacts facts;
    /// Of a LockError.
    std::string lockingUser;
    /// Of an ExecutionError.
    std::optional<unsigned long long> failedIndex;
    /// Of a Refused: the return code.
    std::optional<std::int32_t> returnCode;

    /// Of an exception that is a TAVO::Error, or one of the toolkit about the device; empty for others.
    static std::optional<Failure> of(const std::exception_ptr& failure);
    /// Of a call that returned a code other than 0.
    static Failure refused(std::int32_t code, const std::string& method);
    /// Of a call that was interrupted between two exchanges.
    static Failure interrupted();
    /// Of something wrong on this side.
    static Failure ofThisSide(const std::string& text);

    /// A new exception.
    py::object toPython() const;
    [[noreturn]] void raise() const;
};

/// A failure on its way through C++.
class KnownFailure : public std::exception {
public:
    explicit KnownFailure(Failure known)
        : failure(std::move(known)) {}
    const char* what() const noexcept override { return failure.text.c_str(); }

    Failure failure;
};

/// Raises what Python has for a C++ exception.
[[noreturn]] void raiseAsPython(const std::exception_ptr& failure);

} // namespace TAVO::python
