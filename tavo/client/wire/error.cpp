#include <tavo/client/wire/error.h>

#include <cstddef>
#include <new>
#include <utility>

namespace TAVO {

namespace {

/// Facts of errors that are thrown without any. Never destroyed: errors outlive all statics.
template <ErrorOrigin origin>
const ErrorFacts& usualFacts() noexcept {
    alignas(ErrorFacts) static std::byte storage[sizeof(ErrorFacts)];
    static const auto* const facts =
        ::new (storage) ErrorFacts{.origin = origin, .connectionUsable = origin != ErrorOrigin::connection};
    return *facts;
}

} // namespace

Error::Error(const std::string& message)
    : std::runtime_error(message) {}
Error::Error(const std::string& message, const ErrorFacts& facts)
    : std::runtime_error(message)
    , facts_(std::shared_ptr<const ErrorFacts>(), &facts) {}
Error::~Error() = default;

const ErrorFacts& Error::facts() const noexcept {
    return facts_ ? *facts_ : usualFacts<ErrorOrigin::library>();
}

void Error::setFacts(ErrorFacts facts) { facts_ = std::make_shared<const ErrorFacts>(std::move(facts)); }

ConfigurationError::ConfigurationError(const std::string& message)
    : Error(message) {}
ConfigurationError::~ConfigurationError() = default;

SpecificationError::SpecificationError(const std::string& message)
    : Error(message) {}
SpecificationError::~SpecificationError() = default;

NetworkError::NetworkError(const std::string& message)
    : Error(message, usualFacts<ErrorOrigin::connection>()) {}
NetworkError::~NetworkError() = default;

TAVOKeyError::TAVOKeyError(const std::string& message)
    : Error(message) {}
TAVOKeyError::~TAVOKeyError() = default;

TAVOLoginError::TAVOLoginError(const std::string& message)
    : Error(message) {}
TAVOLoginError::~TAVOLoginError() = default;

LockError::LockError(const std::string& lockingUser)
    : Error("The device is locked by " + lockingUser)
    , lockingUser_(lockingUser) {}
LockError::~LockError() = default;

ExecutionError::~ExecutionError() = default;

} // namespace TAVO
