#include <tavo/cli/output.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <langinfo.h>
#include <unistd.h>

namespace TAVO::cli {

namespace {

std::string dump(const nlohmann::json& document) {
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

void writeError(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); }

} // namespace

void Output::show(const nlohmann::json& document, std::string_view text) {
    write(json_ ? dump(document) : text);
}

void Output::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && writeError_ == 0)
        writeError_ = errno;
}

void Output::tell(const FailureReport& report) const {
    if (json_)
        writeError(dump({{"error",
                          {{"code", static_cast<int>(report.code)},
                           {"kind", report.kind},
                           {"message", report.message}}}}));
    else
        writeError("tavo: " + printable(report.message) + "\n");
}

void Output::finish() {
    if (std::fflush(stdout) != 0 && writeError_ == 0)
        writeError_ = errno;
    if (writeError_ != 0)
        throw Failure(ExitCode::protocol, fmt::format("cannot write to the standard output: {}",
                                                      std::generic_category().message(writeError_)));
}

std::string printable(std::string_view text) {
    std::string made;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x20 && c != '\n') || byte == 0x7f)
            made += fmt::format("\\x{:02x}", byte);
        else
            made += c;
    }
    return made;
}

// NOLINTNEXTLINE(concurrency-mt-unsafe): the locale is set once, before any thread is started
bool localeIsUtf8() { return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0; }

void holdStandardStreams() {
    for (int stream = 0; stream <= 2; ++stream)
        if (::fcntl(stream, F_GETFD) == -1 && errno == EBADF)
            static_cast<void>(::open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY));
}

} // namespace TAVO::cli
