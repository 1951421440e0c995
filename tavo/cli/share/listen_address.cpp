#include <tavo/cli/share/listen_address.h>

#include <charconv>

#include <fmt/format.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

ListenAddress parseListenAddress(const std::string& text) {
    ListenAddress address;
    const auto colon = text.rfind(':');
    if (colon != std::string::npos)
        address.host = text.substr(0, colon);
    if (address.host.starts_with('[') && address.host.ends_with(']'))
        address.host = address.host.substr(1, address.host.size() - 2);
    const auto* begin = text.data() + (colon == std::string::npos ? 0 : colon + 1);
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(begin, end, address.port);
    if (error != std::errc() || stop != end || address.host.empty())
        throw Failure(ExitCode::usage,
                      fmt::format("'{}' is no address to listen on: [ADDRESS:]PORT, where the port is 0 to "
                                  "65535",
                                  text));
    return address;
}

} // namespace TAVO::cli
