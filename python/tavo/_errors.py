"""The exceptions. They mirror the classes of the C++ library and carry the same facts."""

from __future__ import annotations


class Error(Exception):
    """Everything that a device or a network can do. Catch this, or a class derived from it."""

    #: "device" if the device reported an error, "connection" if there was none or it broke, "library" if the
    #: error was found on this side.
    origin: str = "library"
    #: The error code that the device reported, if it did. A return code is not an error code.
    device_error_code: int | None = None
    #: Whether the next call can use the same connection.
    connection_usable: bool = True
    #: Full name of the method that failed; empty if the failure concerns none, or several at once.
    method: str = ""
    #: The field of the result that could not be read.
    field: str = ""
    #: Where the value of that field begins, in bytes from the start of the result.
    offset: int | None = None


class ConfigurationError(Error):
    """The device reports a configuration fault."""


class SpecificationError(Error):
    """Client and device disagree about an object, a method, parameters or results."""


class NetworkError(Error):
    """The connection could not be made, broke, timed out, was interrupted, or delivered bytes unasked."""


class TAVOKeyError(Error):
    """The peer is no genuine appliance."""


class TAVOLoginError(Error):
    """The device refused the user or the password."""


class LockError(Error):
    """Another user holds the lock of the device."""

    locking_user: str = ""


class ExecutionError(Error):
    """A method failed on the device."""

    #: Its position in the batch, counted from 0; the calls before it have been executed.
    failed_index: int = 0


class Mismatch(Error):
    """What was read is not what it should be: bits that an SVF file checks, or the content of a ROM."""


class Refused(Error):
    """A method returned a code other than 0."""

    code: int = -1
