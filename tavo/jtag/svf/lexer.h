#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <tavo/jtag/svf/svf_error.h>

namespace TAVO::jtag::svf {

struct Token {
    enum class Kind {
        word,      ///< a keyword or a number
        digits,    ///< hexadecimal digits in parentheses
        semicolon, ///< the end of a statement
        end,       ///< the end of the text
    };

    Kind kind = Kind::end;
    std::size_t line = 0;
    /// The word.
    std::string_view word = {};
    /// The digits without leading zeros and without what stands between them.
    std::string digits = {};
};

/// The text of a file as tokens, without comments.
class Lexer {
public:
    /// @param text must outlive the lexer.
    /// @param file how errors call it.
    Lexer(std::string_view text, std::string file);

    /// @throws SvfError for what is no token.
    Token next();
    /// How many bytes have been read.
    std::size_t position() const { return position_; }

    [[noreturn]] void refuse(std::size_t line, std::string_view problem) const;

private:
    bool atEnd() const { return position_ == text_.size(); }
    char current() const { return text_[position_]; }
    bool atComment() const;
    void advance();
    void skipComment();
    void skipBlanks();
    std::string readDigits();

    std::string_view text_;
    std::string file_;
    std::size_t position_ = 0;
    std::size_t line_ = 1;
};

/// A word for a message: not too long, and nothing that a terminal would act upon.
std::string shown(std::string_view word);

} // namespace TAVO::jtag::svf
