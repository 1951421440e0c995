#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <tavo/jtag/svf/lexer.h>
#include <tavo/jtag/svf/statement.h>

namespace TAVO::jtag::svf {

/// Reads a file statement by statement, and fills in what is carried over from one to the next. Keywords may
/// be written in lower case. What a file may make this keep and do is bounded by the file's size: digits that
/// are left out take at most `paddingPerFile` bytes and `paddingPerByte` for each byte of the file.
class Parser {
public:
    static constexpr std::size_t paddingPerFile = std::size_t{64} << 20;
    static constexpr std::size_t paddingPerByte = 256;
    /// Of one scan with what stands before and behind it.
    static constexpr std::size_t mostBits = 0x7FFFFFFF;

    /// @param text must outlive the parser.
    /// @param file how errors call it.
    Parser(std::string_view text, std::string file);

    /// @return nothing at the end of the text. @throws SvfError for what is no statement.
    std::optional<Statement> next();
    /// How many bytes have been read.
    std::size_t position() const { return lexer_.position(); }

    [[noreturn]] void refuse(std::size_t line, std::string_view problem) const {
        lexer_.refuse(line, problem);
    }

private:
    /// Of HIR, HDR, SIR and so on each.
    struct Carried {
        bool isKnown = false;
        std::size_t length = 0;
        SharedBits tdi, mask;
    };

    Token take();
    /// The next token, which must be a word. @param what the message says is missing.
    Token takeWord(std::string_view what);
    /// @throws SvfError unless it is the semicolon.
    void insistOnEnd(const Token& token) const;
    [[noreturn]] void refuseEnd(std::string_view what) const;

    EndState parseEnd(Register target);
    Frequency parseFrequency();
    ScanData parseScan(Carried& carried, bool mayBeEmpty);
    SharedBits parseData(const Token& name, std::size_t length);
    RunTest parseRunTest();
    double parseSeconds(const Token& number, const Token& unit);
    StatePath parseStates();
    TestReset parseTestReset();
    TapState parseResting(const Token& word);
    double parseNumber(const Token& word);
    std::uint64_t parseCount(const Token& word, std::uint64_t most);

    Lexer lexer_;
    std::uint64_t padding_;
    /// Of the statement that is read.
    std::string command_;
    std::size_t line_ = 0;
    /// One for each command with data.
    std::array<Carried, 6> carried_;
    bool isWithoutTrst_ = false;
};

/// The name that files use.
std::string_view stateName(TapState state);

} // namespace TAVO::jtag::svf
