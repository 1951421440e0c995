#include <tavo/client/wire/error.h>

#include <utility>

namespace TAVO {

namespace {

/// What errors say that were thrown without facts.
union UsualFacts {
    explicit UsualFacts(ErrorOrigin origin)
        : facts{.origin = origin, .connectionUsable = origin != ErrorOrigin::connection} {}
    UsualFacts(const UsualFacts&) = delete;
    UsualFacts& operator=(const UsualFacts&) = delete;
    ~UsualFacts() {} // NOLINT(modernize-use-equals-default): errors outlive all statics, and so must these

    ErrorFacts facts;
};

template <ErrorOrigin origin>
const ErrorFacts& usualFacts() noexcept {
    static const UsualFacts usual(origin);
    return usual.facts;
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
