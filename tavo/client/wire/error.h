#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/wire/error_facts.h>

namespace TAVO {

class Method;

/// Base of every exception of this library, thrown itself for framing faults of a reply and for device error
/// codes without a class of their own ("Unknown error code: ...").
///
/// A few faults that a correct program never meets (a result of the wrong type,
/// TAVOXDevice::getMaxPacketSize) are plain std::runtime_error instead. All exceptions own their text and may
/// outlive the device.
class TAVO_API Error : public std::runtime_error {
public:
    explicit Error(const std::string& message);
    Error(const Error&) = default;
    Error(Error&&) = default;
    Error& operator=(const Error&) = default;
    Error& operator=(Error&&) = default;
    ~Error() override;

    /// What is known of the failure besides its text. Those that nobody has set begin in the library, but for
    /// a NetworkError's: it begins with the connection, which is not usable any more.
    const ErrorFacts& facts() const noexcept;
    /// For whoever throws, and for whoever knows more while the error passes. Copies that were made before
    /// keep the former facts.
    void setFacts(ErrorFacts facts);

protected:
    /// @param facts lives as long as the program.
    Error(const std::string& message, const ErrorFacts& facts);

private:
    std::shared_ptr<const ErrorFacts> facts_; ///< never changed: copies share them
};

/// The device reported a configuration fault (device error code 1000).
class TAVO_API ConfigurationError : public Error {
public:
    explicit ConfigurationError(const std::string& message);
    ConfigurationError(const ConfigurationError&) = default;
    ConfigurationError(ConfigurationError&&) = default;
    ConfigurationError& operator=(const ConfigurationError&) = default;
    ConfigurationError& operator=(ConfigurationError&&) = default;
    ~ConfigurationError() override;
};

/// Client and device disagree: an unknown method, an object type or version that is not supported, parameters
/// or results that cannot be encoded or decoded, a version text that does not parse, or device error codes
/// 1002 to 1005.
class TAVO_API SpecificationError : public Error {
public:
    explicit SpecificationError(const std::string& message);
    SpecificationError(const SpecificationError&) = default;
    SpecificationError(SpecificationError&&) = default;
    SpecificationError& operator=(const SpecificationError&) = default;
    SpecificationError& operator=(SpecificationError&&) = default;
    ~SpecificationError() override;
};

/// The connection could not be made, broke, or delivered bytes that nobody asked for. Most texts end with
/// "[ErrorCode " code ":" system text "]".
class TAVO_API NetworkError : public Error {
public:
    explicit NetworkError(const std::string& message);
    NetworkError(const NetworkError&) = default;
    NetworkError(NetworkError&&) = default;
    NetworkError& operator=(const NetworkError&) = default;
    NetworkError& operator=(NetworkError&&) = default;
    ~NetworkError() override;
};

/// The key that the peer reported is none of the known server keys.
class TAVO_API TAVOKeyError : public Error {
public:
    explicit TAVOKeyError(const std::string& message);
    TAVOKeyError(const TAVOKeyError&) = default;
    TAVOKeyError(TAVOKeyError&&) = default;
    TAVOKeyError& operator=(const TAVOKeyError&) = default;
    TAVOKeyError& operator=(TAVOKeyError&&) = default;
    ~TAVOKeyError() override;
};

/// A login was refused (device error code 1013, or DeviceFactory::authenticate).
class TAVO_API TAVOLoginError : public Error {
public:
    explicit TAVOLoginError(const std::string& message);
    TAVOLoginError(const TAVOLoginError&) = default;
    TAVOLoginError(TAVOLoginError&&) = default;
    TAVOLoginError& operator=(const TAVOLoginError&) = default;
    TAVOLoginError& operator=(TAVOLoginError&&) = default;
    ~TAVOLoginError() override;
};

/// Another user holds the device's lock (device error code 1001). Copyable, not movable.
/// what() is "The device is locked by " followed by the user.
class TAVO_API LockError : public Error {
public:
    explicit LockError(const std::string& lockingUser);
    LockError(const LockError&) = default;
    LockError& operator=(const LockError&) = default;
    ~LockError() override;

    /// The user who holds the lock, as the device named him.
    std::string lockingUser() const { return lockingUser_; }

private:
    std::string lockingUser_;
};

/// A method of a batch failed on the device (device error code 1006). Copyable, not movable.
/// what() is "Failed to execute ", the Method's full name, ": " and the device's message.
class TAVO_API ExecutionError : public Error {
public:
    /// @param method  the Method that failed; kept alive by this exception.
    /// @param index   its position in the batch, counted from 0.
    /// @param message the device's own text.
    /// @throws std::invalid_argument for an empty pointer to the method.
    ExecutionError(std::shared_ptr<Method> method, unsigned long long index, const std::string& message);
    ExecutionError(const ExecutionError&) = default;
    ExecutionError& operator=(const ExecutionError&) = default;
    ~ExecutionError() override;

    std::shared_ptr<Method> failedMethod() const { return method_; }
    unsigned long long failedMethodIndex() const { return index_; }

private:
    std::shared_ptr<Method> method_;
    unsigned long long index_;
};

} // namespace TAVO
