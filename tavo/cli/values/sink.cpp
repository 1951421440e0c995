#include <tavo/cli/values/sink.h>

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace TAVO::cli {

void Sink::write(std::string_view bytes) {
    if (bytes.size() > buffer_.size() - held_)
        flush();
    if (bytes.size() > buffer_.size()) {
        pass(bytes);
        return;
    }
    std::copy(bytes.begin(), bytes.end(), buffer_.begin() + static_cast<std::ptrdiff_t>(held_));
    held_ += bytes.size();
}

void Sink::flush() {
    pass({buffer_.data(), held_});
    held_ = 0;
}

void Sink::pass(std::string_view bytes) {
    while (!bytes.empty() && error_ == 0) {
        const auto written = ::write(descriptor_, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            error_ = errno;
        bytes.remove_prefix(static_cast<std::size_t>(written < 0 ? 0 : written));
    }
}

} // namespace TAVO::cli
