#include <tavo/client/wire/error.h>

namespace TAVO {

Error::Error(const std::string& message)
    : std::runtime_error(message) {}
Error::~Error() = default;

ConfigurationError::ConfigurationError(const std::string& message)
    : Error(message) {}
ConfigurationError::~ConfigurationError() = default;

SpecificationError::SpecificationError(const std::string& message)
    : Error(message) {}
SpecificationError::~SpecificationError() = default;

NetworkError::NetworkError(const std::string& message)
    : Error(message) {}
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
