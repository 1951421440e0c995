#include <tavo/config/environment.h>

#include <cstdlib>

namespace TAVO::config {

std::optional<std::string> environmentVariable(const char* name) {
    const auto* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody changes the environment
    if (value == nullptr || *value == '\0')
        return std::nullopt;
    return value;
}

} // namespace TAVO::config
