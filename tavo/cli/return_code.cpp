#include <tavo/cli/return_code.h>

#include <cstdint>

#include <fmt/format.h>

#include <tavo/cli/failure.h>
#include <tavo/client/object/method.h>
#include <tavo/simulator/return_codes.h>

namespace TAVO::cli {

namespace {

namespace return_code = simulator::return_code;

struct Meaning {
    std::int32_t code;
    std::string_view text;
};

constexpr Meaning meanings[] = {
    {return_code::badArgument, "an argument is out of range or malformed"},
    {return_code::mismatch, "the compared bits differ"},
    {return_code::disabled, "the function is switched off"},
    {return_code::notAcknowledged, "nobody acknowledged"},
    {return_code::timedOut, "it took too long"},
    {return_code::notReady, "the board has no power, or the port is not open"},
    {return_code::busy, "busy: another user has reserved the object, or an update is still running"},
};

} // namespace

std::string_view meaningOfReturnCode(const Method& method) {
    for (const auto& meaning : meanings)
        if (meaning.code == method.returnCode())
            return meaning.text;
    return "";
}

std::string returnCodeText(const Method& method) {
    const auto meaning = meaningOfReturnCode(method);
    return fmt::format("{}{}{}", method.returnCode(), meaning.empty() ? "" : ": ", meaning);
}

void requireSuccess(const Method& method) {
    if (method.returnCode() == return_code::done)
        return;
    throw Failure(
        ExitCode::refused, fmt::format("{} returned code {}", method.getFullName(), returnCodeText(method)),
        ReturnedCode{method.getFullName(), method.returnCode(), std::string(meaningOfReturnCode(method))});
}

} // namespace TAVO::cli
