#include <tavo/cli/secret.h>

#include <cstring>
#include <utility>

namespace TAVO::cli {

void wipe(std::string& text) noexcept {
    text.resize(text.capacity());
    ::explicit_bzero(text.data(), text.size());
    text.clear();
}

Secret::Secret() { text_.reserve(256); }

Secret::Secret(std::string_view text)
    : text_(text) {}

Secret::Secret(Secret&& other) noexcept
    : text_(std::move(other.text_)) {
    wipe(other.text_);
}

Secret& Secret::operator=(Secret&& other) noexcept {
    if (this != &other) {
        wipe(text_);
        text_ = std::move(other.text_);
        wipe(other.text_);
    }
    return *this;
}

void Secret::append(char c) {
    if (text_.size() == text_.capacity()) {
        std::string larger;
        larger.reserve(2 * text_.capacity());
        larger = text_;
        wipe(text_);
        text_ = std::move(larger);
    }
    text_ += c;
}

} // namespace TAVO::cli
