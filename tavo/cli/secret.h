#pragma once

#include <string>
#include <string_view>

namespace TAVO::cli {

/// Overwrites the text and its spare capacity, then clears it.
void wipe(std::string& text) noexcept;

/// A text that leaves no trace in memory: it wipes every buffer it held.
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
