#pragma once

#include <string>
#include <string_view>

namespace TAVO::cli {

/// Overwrites what the text holds, and its spare room, and leaves it empty.
void wipe(std::string& text) noexcept;

/// A text that leaves nothing of itself in memory: every place where it was is wiped.
class Secret {
public:
    Secret();
    Secret(Secret&& other) noexcept;
    Secret& operator=(Secret&& other) noexcept;
    ~Secret() { wipe(text_); }

    explicit Secret(std::string_view text);

    Secret copy() const { return Secret(text_); }
    void append(char c);
    void removeLast() { text_.pop_back(); }
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

} // namespace TAVO::cli
