#include <tavo/jtag/svf/lexer.h>

#include <utility>

#include <fmt/format.h>

namespace TAVO::jtag::svf {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }

bool isDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

} // namespace

SvfError::SvfError(std::string_view file, std::size_t line, std::string_view problem)
    : std::runtime_error(fmt::format("{}:{}: {}", file, line, problem)) {}

std::string shown(std::string_view word) {
    constexpr std::size_t longest = 40;
    std::string text;
    for (const char c : word.substr(0, longest))
        text += c >= ' ' && c <= '~' ? c : '?';
    return word.size() > longest ? text + "..." : text;
}

Lexer::Lexer(std::string_view text, std::string file)
    : text_(text)
    , file_(std::move(file)) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text_.starts_with(byteOrderMark))
        position_ = byteOrderMark.size();
    // Files of DOS may end so.
    if (text_.ends_with('\x1A'))
        text_.remove_suffix(1);
}

void Lexer::refuse(std::size_t line, std::string_view problem) const { throw SvfError(file_, line, problem); }

bool Lexer::atComment() const { return current() == '!' || text_.substr(position_).starts_with("//"); }

void Lexer::advance() {
    // A line ends with CR, LF or both.
    if (current() == '\n' || (current() == '\r' && !text_.substr(position_ + 1).starts_with('\n')))
        ++line_;
    ++position_;
}

void Lexer::skipComment() {
    while (!atEnd() && current() != '\n' && current() != '\r')
        ++position_;
}

void Lexer::skipBlanks() {
    while (!atEnd())
        if (isBlank(current()))
            advance();
        else if (atComment())
            skipComment();
        else
            return;
}

std::string Lexer::readDigits() {
    const auto begin = line_;
    std::string digits;
    for (advance();; advance()) {
        skipBlanks();
        if (atEnd())
            refuse(begin, "the parenthesis is never closed");
        if (current() == ')')
            break;
        if (!isDigit(current()))
            refuse(line_, fmt::format("'{}' is no hexadecimal digit", shown(text_.substr(position_, 1))));
        if (!digits.empty() || current() != '0')
            digits += current();
    }
    advance();
    return digits;
}

Token Lexer::next() {
    skipBlanks();
    Token token{.line = line_};
    if (atEnd())
        return token;
    if (current() == ';') {
        advance();
        token.kind = Token::Kind::semicolon;
    } else if (current() == '(') {
        token.kind = Token::Kind::digits;
        token.digits = readDigits();
    } else if (current() == ')') {
        refuse(line_, "there is a ')' without '('");
    } else {
        const auto begin = position_;
        const auto isPart = [this] {
            return !isBlank(current()) && current() != ';' && current() != '(' && current() != ')' &&
                   !atComment();
        };
        while (!atEnd() && isPart())
            ++position_;
        token.kind = Token::Kind::word;
        token.word = text_.substr(begin, position_ - begin);
    }
    return token;
}

} // namespace TAVO::jtag::svf
