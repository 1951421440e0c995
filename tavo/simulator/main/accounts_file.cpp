#include <tavo/simulator/main/accounts_file.h>

#include <fstream>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>

namespace {

constexpr std::size_t largestFile = std::size_t{1} << 20;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::string content(largestFile + 1, '\0');
    in.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (in.gcount() == 0 && !in.eof())
        throw std::invalid_argument(fmt::format("{}: cannot be read", file.string()));
    content.resize(static_cast<std::size_t>(in.gcount()));
    if (content.size() > largestFile)
        throw std::invalid_argument(fmt::format("{}: is too large", file.string()));
    return content;
}

} // namespace

std::map<std::string, std::string> readAccounts(const std::filesystem::path& file) {
    const auto content = contentOf(file);
    std::map<std::string, std::string> accounts;
    std::string_view rest = content;
    for (std::size_t number = 1; !rest.empty(); ++number) {
        const auto end = rest.find('\n');
        auto line = rest.substr(0, end);
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;
        const auto refuse = [&](std::string_view why) {
            throw std::invalid_argument(fmt::format("{}:{}: {}", file.string(), number, why));
        };
        const auto colon = line.find(':');
        if (colon == std::string_view::npos || colon == 0)
            refuse("expected USER:PASSWORD");
        if (!accounts.emplace(line.substr(0, colon), line.substr(colon + 1)).second)
            refuse("the user has an account already");
    }
    if (accounts.empty())
        throw std::invalid_argument(fmt::format("{}: has no accounts", file.string()));
    return accounts;
}
