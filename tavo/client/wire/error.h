#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/wire/error_facts.h>

namespace TAVO {

class Method;

/// Base of the exceptions of this library: catch it for everything that a device or a network can do. Error
/// itself reports malformed replies, and device error codes without a class of their own ("Unknown error
/// code: ...").
///
/// A few faults that a correct program never meets (a result of the wrong type,
/// TAVOXDevice::getMaxPacketSize) are plain std::runtime_error instead. Exceptions own their text and may
/// outlive the device.
///
/// @code
/// try {
///     device->call(method);
/// } catch (const TAVO::LockError& error) {
///     std::cerr << error.lockingUser() << " is using the device\n";
/// } catch (const TAVO::Error& error) {
///     std::cerr << error.what() << '\n';
/// }
/// @endcode
class TAVO_API Error : public std::runtime_error {
public:
    explicit Error(const std::string& message);
    Error(const Error&) = default;
    Error(Error&&) = default;
    Error& operator=(const Error&) = default;
    Error& operator=(Error&&) = default;
    ~Error() override;

    /// What is known of the failure besides its text. Lives as long as this exception and until the next
    /// setFacts(). Without any set, the origin is `library`; that of a NetworkError is `connection`, and its
    /// connection is not usable.
    const ErrorFacts& facts() const noexcept;
    /// Replaces the facts. For code that throws, or that catches and rethrows and knows more. Copies made
    /// before keep their facts.
    void setFacts(ErrorFacts facts);

protected:
    /// @param facts not copied; must live until the program ends.
    Error(const std::string& message, const ErrorFacts& facts);

private:
    std::shared_ptr<const ErrorFacts> facts_; ///< immutable, as copies share them
};

/// The device reports a configuration fault (device error code 1000); what() is its text. Set up the
/// appliance before you try again.
class TAVO_API ConfigurationError : public Error {
public:
    explicit ConfigurationError(const std::string& message);
    ConfigurationError(const ConfigurationError&) = default;
    ConfigurationError(ConfigurationError&&) = default;
    ConfigurationError& operator=(const ConfigurationError&) = default;
    ConfigurationError& operator=(ConfigurationError&&) = default;
    ~ConfigurationError() override;
};

/// Client and device disagree: an unknown method, an unsupported object type or version, parameters or
/// results that cannot be encoded or decoded, a version text that does not parse, or device error codes 1002
/// to 1005. Trying the same call again seldom helps.
class TAVO_API SpecificationError : public Error {
public:
    explicit SpecificationError(const std::string& message);
    SpecificationError(const SpecificationError&) = default;
    SpecificationError(SpecificationError&&) = default;
    SpecificationError& operator=(const SpecificationError&) = default;
    SpecificationError& operator=(SpecificationError&&) = default;
    ~SpecificationError() override;
};

/// The connection could not be made, broke, timed out, was interrupted, or delivered bytes that nobody asked
/// for. Texts that report an error of the operating system end with "[ErrorCode " code ":" system text "]".
/// The next call usually connects anew; docs/errors.md says in which state each failure leaves the
/// connection.
class TAVO_API NetworkError : public Error {
public:
    explicit NetworkError(const std::string& message);
    NetworkError(const NetworkError&) = default;
    NetworkError(NetworkError&&) = default;
    NetworkError& operator=(const NetworkError&) = default;
    NetworkError& operator=(NetworkError&&) = default;
    ~NetworkError() override;
};

/// The peer reported a key that is none of serverKeys(): it is not a genuine appliance, or the library was
/// built without the keys of this one.
class TAVO_API TAVOKeyError : public Error {
public:
    explicit TAVOKeyError(const std::string& message);
    TAVOKeyError(const TAVOKeyError&) = default;
    TAVOKeyError(TAVOKeyError&&) = default;
    TAVOKeyError& operator=(const TAVOKeyError&) = default;
    TAVOKeyError& operator=(TAVOKeyError&&) = default;
    ~TAVOKeyError() override;
};

/// The device refused the user or the password (device error code 1013), or DeviceFactory::authenticate
/// failed for any reason.
class TAVO_API TAVOLoginError : public Error {
public:
    explicit TAVOLoginError(const std::string& message);
    TAVOLoginError(const TAVOLoginError&) = default;
    TAVOLoginError(TAVOLoginError&&) = default;
    TAVOLoginError& operator=(const TAVOLoginError&) = default;
    TAVOLoginError& operator=(TAVOLoginError&&) = default;
    ~TAVOLoginError() override;
};

/// Another user holds the device's lock (device error code 1001). what() is "The device is locked by " and
/// the user. Copyable, not movable.
class TAVO_API LockError : public Error {
public:
    explicit LockError(const std::string& lockingUser);
    LockError(const LockError&) = default;
    LockError& operator=(const LockError&) = default;
    ~LockError() override;

    /// The user who holds the lock, in the device's words.
    std::string lockingUser() const { return lockingUser_; }

private:
    std::string lockingUser_;
};

/// A method of a batch failed on the device (device error code 1006). what() is "Failed to execute ", the
/// Method's full name, ": " and the device's message. Copyable, not movable.
class TAVO_API ExecutionError : public Error {
public:
    /// @param method  the Method that failed; this exception keeps it alive.
    /// @param index   its position in the batch, counted from 0.
    /// @param message the device's own text.
    /// @throws std::invalid_argument for an empty `method`.
    ExecutionError(std::shared_ptr<Method> method, unsigned long long index, const std::string& message);
    ExecutionError(const ExecutionError&) = default;
    ExecutionError& operator=(const ExecutionError&) = default;
    ~ExecutionError() override;

    /// The Method that failed; never empty. It belongs to its device's thread, and using it needs its proxy.
    std::shared_ptr<Method> failedMethod() const { return method_; }
    /// The position of the Method in its batch, counted from 0; those before it have been executed.
    unsigned long long failedMethodIndex() const { return index_; }

private:
    std::shared_ptr<Method> method_;
    unsigned long long index_;
};

} // namespace TAVO
