#include <tavo/client/object/internal/return_code.h>

#include <cstdint>
#include <locale>
#include <sstream>

#include <tavo/client/object/method.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

void requireSuccess(const Method& method, const std::string& object) {
    if (method.returnCode() == 0)
        return;
    std::ostringstream message;
    message.imbue(std::locale::classic()); // the application's locale may group digits
    message << "Error executing " << method.getName() << "() method on " << object << ": " << std::hex
            << static_cast<std::uint32_t>(method.returnCode());
    throw withFacts(Error(message.str()), {.origin = ErrorOrigin::device, .method = method.getFullName()});
}

} // namespace TAVO
