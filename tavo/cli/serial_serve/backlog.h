#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace TAVO::cli {

/// What a board has said and nobody has taken yet: the newest of it.
class Backlog {
public:
    static constexpr std::size_t most = std::size_t{256} << 10;

    void add(std::string_view text) {
        text_ += text;
        // Not for every byte: it moves all the others.
        if (text_.size() > 2 * most)
            text_.erase(0, text_.size() - most);
    }
    std::string_view text() const {
        const std::string_view all = text_;
        return all.substr(all.size() > most ? all.size() - most : 0);
    }
    bool isFull() const { return text_.size() >= most; }
    bool isEmpty() const { return text_.empty(); }
    /// Drops the oldest of text().
    void drop(std::size_t count) { text_.erase(0, text_.size() - text().size() + count); }
    std::string take() {
        std::string taken(text());
        text_.clear();
        return taken;
    }

private:
    std::string text_;
};

} // namespace TAVO::cli
