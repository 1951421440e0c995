#include "failure.h"

#include <new>
#include <stdexcept>

#include <pybind11/stl.h>

#include <tavo/client/object/method.h>
#include <tavo/client/wire/error.h>
#include <tavo/jtag/svf/comparison.h>
#include <tavo/jtag/svf/svf_error.h>
#include <tavo/toolkit/errors.h>

#include "process.h"
#include "values.h"

namespace TAVO::python {

namespace {

Failure describe(const char* kind, const Error& error) {
    Failure failure;
    failure.kind = kind;
    failure.text = error.what();
    failure.facts = error.facts();
    return failure;
}

Failure ofDevice(const char* kind, const std::exception& error) {
    Failure failure;
    failure.kind = kind;
    failure.text = error.what();
    failure.facts.origin = ErrorOrigin::device;
    return failure;
}

const char* originText(ErrorOrigin origin) {
    switch (origin) {
    case ErrorOrigin::device:
        return "device";
    case ErrorOrigin::connection:
        return "connection";
    case ErrorOrigin::library:
        break;
    }
    return "library";
}

} // namespace

std::optional<Failure> Failure::of(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const LockError& error) {
        auto known = describe("LockError", error);
        known.lockingUser = error.lockingUser();
        return known;
    } catch (const ExecutionError& error) {
        auto known = describe("ExecutionError", error);
        known.failedIndex = error.failedMethodIndex();
        if (known.facts.method.empty())
            known.facts.method = error.failedMethod()->getFullName();
        return known;
    } catch (const ConfigurationError& error) {
        return describe("ConfigurationError", error);
    } catch (const SpecificationError& error) {
        return describe("SpecificationError", error);
    } catch (const NetworkError& error) {
        return describe("NetworkError", error);
    } catch (const TAVOKeyError& error) {
        return describe("TAVOKeyError", error);
    } catch (const TAVOLoginError& error) {
        return describe("TAVOLoginError", error);
    } catch (const Error& error) {
        return describe("Error", error);
    } catch (const KnownFailure& known) {
        return known.failure;
    } catch (const toolkit::Difference& error) {
        return ofDevice("Mismatch", error);
    } catch (const jtag::svf::Mismatch& error) {
        return ofDevice("Mismatch", error);
    } catch (const toolkit::Fault& error) {
        return ofDevice("Error", error);
    } catch (...) {
        return std::nullopt;
    }
}

Failure Failure::interrupted() {
    Failure failure;
    failure.kind = "NetworkError";
    failure.text = "Call to device interrupted.";
    failure.facts.origin = ErrorOrigin::connection;
    return failure;
}

Failure Failure::refused(std::int32_t code, const std::string& method) {
    Failure failure;
    failure.kind = "Refused";
    failure.text = method + " returned " + std::to_string(code);
    failure.facts.origin = ErrorOrigin::device;
    failure.facts.method = method;
    failure.returnCode = code;
    return failure;
}

Failure Failure::ofThisSide(const std::string& text) {
    Failure failure;
    failure.kind = "Error";
    failure.text = text;
    return failure;
}

py::object Failure::toPython() const {
    const auto kindInPython = py::module_::import("tavo._errors").attr(kind.c_str());
    auto exception = kindInPython(textOf(text));
    exception.attr("origin") = originText(facts.origin);
    exception.attr("device_error_code") = facts.deviceErrorCode;
    exception.attr("connection_usable") = facts.connectionUsable;
    exception.attr("method") = textOf(facts.method);
    exception.attr("field") = textOf(facts.field);
    exception.attr("offset") = facts.offset;
    if (kind == "LockError")
        exception.attr("locking_user") = textOf(lockingUser);
    if (failedIndex)
        exception.attr("failed_index") = *failedIndex;
    if (returnCode)
        exception.attr("code") = *returnCode;
    return exception;
}

void Failure::raise() const {
    const auto exception = process::runPython([&] { return toPython(); });
    PyErr_SetObject(reinterpret_cast<PyObject*>(Py_TYPE(exception.ptr())), exception.ptr());
    throw py::error_already_set();
}

void raiseAsPython(const std::exception_ptr& failure) {
    if (const auto known = Failure::of(failure))
        known->raise();
    try {
        std::rethrow_exception(failure);
    } catch (const jtag::svf::SvfError& error) {
        PyErr_SetObject(PyExc_ValueError, textOf(error.what()).ptr());
        throw py::error_already_set();
    } catch (const toolkit::BadRequest& error) {
        PyErr_SetObject(PyExc_ValueError, textOf(error.what()).ptr());
        throw py::error_already_set();
    } catch (...) { // is translated below
    }
    // pybind11 translates the others: std::invalid_argument is a ValueError, std::bad_alloc a MemoryError.
    std::rethrow_exception(failure);
}

} // namespace TAVO::python
