#include <tavo/cli/files.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

#include <fmt/format.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

[[noreturn]] void refuse(const std::string& path) {
    throw Failure(ExitCode::usage,
                  fmt::format("cannot read '{}': {}", path, std::generic_category().message(errno)));
}

std::string readAll(std::FILE* file, const std::string& path) {
    std::string content;
    std::array<char, 65536> part{};
    while (const auto got = std::fread(part.data(), 1, part.size(), file))
        content.append(part.data(), got);
    if (std::ferror(file) != 0)
        refuse(path);
    return content;
}

} // namespace

std::string readFile(const std::string& path) {
    if (path == "-")
        return readAll(stdin, path);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file)
        refuse(path);
    return readAll(file.get(), path);
}

std::vector<std::uint8_t> readImage(const std::string& path) {
    const auto content = readFile(path);
    if (content.empty())
        throw Failure(ExitCode::usage, fmt::format("'{}' is empty", path));
    return {content.begin(), content.end()};
}

} // namespace TAVO::cli
