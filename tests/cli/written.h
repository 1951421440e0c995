#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

#include <tavo/cli/values/sink.h>

namespace tool_test {

/// What `action` writes to a sink.
template <class Action>
std::string written(Action action) {
    const int file = ::memfd_create("written", MFD_CLOEXEC);
    if (file < 0)
        throw std::runtime_error("Cannot make a file");
    {
        TAVO::cli::Sink sink(file);
        action(sink);
    }
    const auto size = ::lseek(file, 0, SEEK_END);
    std::string content(static_cast<std::size_t>(size), '\0');
    const auto got = ::pread(file, content.data(), content.size(), 0);
    ::close(file);
    if (got != size)
        throw std::runtime_error("Cannot read a file");
    return content;
}

} // namespace tool_test
