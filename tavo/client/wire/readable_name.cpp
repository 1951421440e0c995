#include <tavo/client/wire/internal/readable_name.h>

#if __has_include(<cxxabi.h>)
#include <cstdlib>
#include <memory>

#include <cxxabi.h>
#endif

namespace TAVO {

std::string readableName(const std::type_info& type) {
#if __has_include(<cxxabi.h>)
    const auto release = [](char* text) { std::free(text); };
    int status = 0;
    const std::unique_ptr<char, decltype(release)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), release);
    if (name)
        return name.get();
#endif
    return type.name();
}

} // namespace TAVO
