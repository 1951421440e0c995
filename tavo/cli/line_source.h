#pragma once

#include <optional>
#include <sstream>
#include <string>

namespace TAVO::cli {

/// Gives lines of text, without their ends.
class LineSource {
public:
    virtual ~LineSource() = default;
    /// Empty at the end. @throws Interrupted when a signal came.
    virtual std::optional<std::string> next() = 0;
};

/// The lines of a text.
class TextLines : public LineSource {
public:
    explicit TextLines(const std::string& text)
        : text_(text) {}
    std::optional<std::string> next() override;

private:
    std::istringstream text_;
};

/// The lines of standard input, as they come. Takes nothing beyond a line that it gave, so that a command can
/// read what follows.
class InputLines : public LineSource {
public:
    /// @throws Failure (usage) if standard input cannot be read.
    std::optional<std::string> next() override;
};

} // namespace TAVO::cli
