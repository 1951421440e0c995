#include <tavo/jtag/svf/parser.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace TAVO::jtag::svf {

namespace {

using enum TapState;

struct StateName {
    std::string_view name;
    TapState state;
};

constexpr std::array stateNames{
    StateName{"RESET", testLogicReset},  StateName{"IDLE", runTestIdle},
    StateName{"DRSELECT", selectDrScan}, StateName{"DRCAPTURE", captureDr},
    StateName{"DRSHIFT", shiftDr},       StateName{"DREXIT1", exit1Dr},
    StateName{"DRPAUSE", pauseDr},       StateName{"DREXIT2", exit2Dr},
    StateName{"DRUPDATE", updateDr},     StateName{"IRSELECT", selectIrScan},
    StateName{"IRCAPTURE", captureIr},   StateName{"IRSHIFT", shiftIr},
    StateName{"IREXIT1", exit1Ir},       StateName{"IRPAUSE", pauseIr},
    StateName{"IREXIT2", exit2Ir},       StateName{"IRUPDATE", updateIr},
};

/// Places in Parser::carried_.
enum CarriedPlace : std::size_t { ofHir, ofHdr, ofSir, ofSdr, ofTir, ofTdr };

std::string upper(std::string_view word) {
    std::string text(word);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

std::optional<TapState> stateOf(std::string_view word) {
    const auto name = upper(word);
    const auto found = std::find_if(stateNames.begin(), stateNames.end(),
                                    [&](const StateName& known) { return known.name == name; });
    if (found == stateNames.end())
        return std::nullopt;
    return found->state;
}

bool isWord(const Token& token, std::string_view word) {
    return token.kind == Token::Kind::word && upper(token.word) == word;
}

unsigned valueOf(char digit) {
    if (digit >= '0' && digit <= '9')
        return static_cast<unsigned>(digit - '0');
    return static_cast<unsigned>((digit | 0x20) - 'a' + 10);
}

std::size_t significantBits(std::string_view digits) {
    if (digits.empty())
        return 0;
    const auto first = valueOf(digits.front());
    const std::size_t ofFirst = first >= 8 ? 4 : first >= 4 ? 3 : first >= 2 ? 2 : 1;
    return (digits.size() - 1) * 4 + ofFirst;
}

BitString bitsOf(std::size_t length, std::string_view digits) {
    std::vector<std::uint8_t> bytes(BitString::bytesFor(length));
    std::size_t nibble = 0;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, ++nibble)
        bytes[nibble / 2] |= static_cast<std::uint8_t>(valueOf(*digit) << nibble % 2 * 4);
    return {length, std::move(bytes)};
}

} // namespace

std::string_view stateName(TapState state) { return stateNames[static_cast<std::size_t>(state)].name; }

Parser::Parser(std::string_view text, std::string file)
    : lexer_(text, std::move(file))
    , padding_(paddingPerFile + std::uint64_t{paddingPerByte} * text.size()) {}

Token Parser::take() {
    auto token = lexer_.next();
    if (token.kind == Token::Kind::end)
        refuse(line_, fmt::format("{} has no ';' at its end", command_));
    return token;
}

void Parser::refuseEnd(std::string_view what) const {
    refuse(line_, fmt::format("{} ends without {}", command_, what));
}

Token Parser::takeWord(std::string_view what) {
    auto token = take();
    if (token.kind == Token::Kind::semicolon)
        refuseEnd(what);
    if (token.kind == Token::Kind::digits)
        refuse(token.line, fmt::format("{} has a '(' in place of {}", command_, what));
    return token;
}

void Parser::insistOnEnd(const Token& token) const {
    if (token.kind == Token::Kind::word)
        refuse(token.line, fmt::format("'{}' does not belong here in {}", shown(token.word), command_));
    if (token.kind == Token::Kind::digits)
        refuse(token.line, fmt::format("'(' does not belong here in {}", command_));
}

std::optional<Statement> Parser::next() {
    auto token = lexer_.next();
    while (token.kind == Token::Kind::semicolon)
        token = lexer_.next();
    if (token.kind == Token::Kind::end)
        return std::nullopt;
    line_ = token.line;
    if (token.kind == Token::Kind::digits)
        refuse(line_, "'(' is no command");
    command_ = upper(token.word);

    Statement statement{.line = line_, .what = StatePath{}};
    const auto surround = [&](Register target, bool isHeader, CarriedPlace place) {
        return Surround{target, isHeader, parseScan(carried_[place], true)};
    };
    constexpr auto ir = Register::instruction;
    constexpr auto dr = Register::data;
    if (command_ == "SDR")
        statement.what = Scan{dr, parseScan(carried_[ofSdr], false)};
    else if (command_ == "SIR")
        statement.what = Scan{ir, parseScan(carried_[ofSir], false)};
    else if (command_ == "RUNTEST")
        statement.what = parseRunTest();
    else if (command_ == "STATE")
        statement.what = parseStates();
    else if (command_ == "ENDIR")
        statement.what = parseEnd(ir);
    else if (command_ == "ENDDR")
        statement.what = parseEnd(dr);
    else if (command_ == "HIR")
        statement.what = surround(ir, true, ofHir);
    else if (command_ == "HDR")
        statement.what = surround(dr, true, ofHdr);
    else if (command_ == "TIR")
        statement.what = surround(ir, false, ofTir);
    else if (command_ == "TDR")
        statement.what = surround(dr, false, ofTdr);
    else if (command_ == "FREQUENCY")
        statement.what = parseFrequency();
    else if (command_ == "TRST")
        statement.what = parseTestReset();
    else if (command_ == "PIO" || command_ == "PIOMAP")
        refuse(line_, fmt::format("{} needs parallel pins, which a jtag object does not have", command_));
    else
        refuse(line_, fmt::format("'{}' is no command", shown(token.word)));
    return statement;
}

double Parser::parseNumber(const Token& word) {
    const auto* begin = word.word.data();
    const auto* const end = begin + word.word.size();
    double number = 0;
    // Not "inf", "nan" or a sign.
    const bool begins = *begin == '.' || (*begin >= '0' && *begin <= '9');
    const auto read = begins ? std::from_chars(begin, end, number) : std::from_chars_result{begin, {}};
    if (read.ptr != end || read.ec != std::errc() || !std::isfinite(number))
        refuse(word.line, fmt::format("{}: '{}' is no number", command_, shown(word.word)));
    return number;
}

std::uint64_t Parser::parseCount(const Token& word, std::uint64_t most) {
    const auto number = parseNumber(word);
    if (number != std::floor(number) || number > static_cast<double>(most))
        refuse(word.line,
               fmt::format("{}: '{}' is no whole number up to {}", command_, shown(word.word), most));
    return static_cast<std::uint64_t>(number);
}

TapState Parser::parseResting(const Token& word) {
    const auto state = stateOf(word.word);
    if (!state || !HWDebug::isResting(*state))
        refuse(word.line, fmt::format("{}: '{}' is none of IRPAUSE, DRPAUSE, RESET and IDLE", command_,
                                      shown(word.word)));
    return *state;
}

EndState Parser::parseEnd(Register target) {
    const EndState end{target, parseResting(takeWord("a state"))};
    insistOnEnd(take());
    return end;
}

Frequency Parser::parseFrequency() {
    const auto number = take();
    if (number.kind == Token::Kind::semicolon)
        return {};
    if (number.kind == Token::Kind::digits)
        refuse(number.line, "FREQUENCY has a '(' in place of a number");
    const auto hertz = parseNumber(number);
    if (hertz < 1)
        refuse(number.line, fmt::format("FREQUENCY: {} Hz is less than 1 Hz", shown(number.word)));
    const auto unit = takeWord("HZ");
    if (!isWord(unit, "HZ"))
        refuse(unit.line, fmt::format("FREQUENCY: '{}' is not HZ", shown(unit.word)));
    insistOnEnd(take());
    constexpr auto most = std::numeric_limits<std::int32_t>::max();
    return {hertz >= most ? most : static_cast<std::int32_t>(hertz)};
}

SharedBits Parser::parseData(const Token& name, std::size_t length) {
    const auto data = take();
    if (data.kind != Token::Kind::digits)
        refuse(data.line, fmt::format("{}: {} has no data in parentheses", command_, upper(name.word)));
    if (const auto bits = significantBits(data.digits); bits > length)
        refuse(data.line,
               fmt::format("{}: {} has {} bits, more than {}", command_, upper(name.word), bits, length));
    const auto size = BitString::bytesFor(length);
    const auto padding = size - std::min(size, data.digits.size() / 2);
    if (padding > padding_)
        refuse(data.line, fmt::format("{}: {} of {} bits leaves out too many digits for a file of this size",
                                      command_, upper(name.word), length));
    padding_ -= padding;
    return std::make_shared<const BitString>(bitsOf(length, data.digits));
}

ScanData Parser::parseScan(Carried& carried, bool mayBeEmpty) {
    const auto length = static_cast<std::size_t>(parseCount(takeWord("a length"), mostBits));
    ScanData scan{.length = length, .tdi = {}, .tdo = {}, .mask = {}, .isCompared = false};
    if (carried.isKnown && carried.length == length) {
        scan.tdi = carried.tdi;
        scan.mask = carried.mask;
    }
    bool hasTdi = false, hasTdo = false, hasMask = false, hasSmask = false;
    for (auto name = take(); name.kind != Token::Kind::semicolon; name = take()) {
        const auto keyword = upper(name.word);
        const auto once = [&](bool& isGiven) {
            if (std::exchange(isGiven, true))
                refuse(name.line, fmt::format("{} has {} twice", command_, keyword));
            return parseData(name, length);
        };
        if (name.kind == Token::Kind::digits)
            refuse(name.line, fmt::format("{} has data that is none of TDI, TDO, MASK and SMASK", command_));
        if (keyword == "TDI")
            scan.tdi = once(hasTdi);
        else if (keyword == "TDO")
            scan.tdo = once(hasTdo);
        else if (keyword == "MASK")
            scan.mask = once(hasMask);
        else if (keyword == "SMASK")
            // Says which bits of TDI matter: all of them are sent.
            once(hasSmask);
        else
            refuse(name.line,
                   fmt::format("{}: '{}' is none of TDI, TDO, MASK and SMASK", command_, shown(name.word)));
    }
    if (length > 0 && !scan.tdi)
        refuse(line_, carried.isKnown ? fmt::format("{} has no TDI, and the last one had {} bits, not {}",
                                                    command_, carried.length, length)
                                      : fmt::format("{} has no TDI, and there is none before", command_));
    if (length == 0 && !mayBeEmpty)
        refuse(line_, fmt::format("{} of no bits", command_));
    scan.isCompared = scan.tdo && length > 0 && !(scan.mask && scan.mask->isAll(0, length, false));
    carried = {true, length, scan.tdi, scan.mask};
    return scan;
}

double Parser::parseSeconds(const Token& number, const Token& unit) {
    constexpr double day = 24 * 60 * 60;
    const auto seconds = parseNumber(number);
    if (!isWord(unit, "SEC"))
        refuse(unit.line, fmt::format("{}: '{}' is not SEC", command_, shown(unit.word)));
    if (seconds > day)
        refuse(number.line, fmt::format("{}: {} seconds are more than a day", command_, shown(number.word)));
    return seconds;
}

RunTest Parser::parseRunTest() {
    RunTest run;
    auto number = takeWord("a number");
    if (stateOf(number.word)) {
        run.state = parseResting(number);
        number = takeWord("a number");
    }
    auto unit = takeWord("TCK or SEC");
    if (isWord(unit, "SCK"))
        refuse(unit.line, "RUNTEST: there is no SCK, a jtag object has no clock but TCK");
    auto next = Token{};
    bool hasTime = true;
    if (isWord(unit, "TCK")) {
        run.clocks = parseCount(number, std::numeric_limits<std::uint32_t>::max());
        next = number = take();
        hasTime = number.kind == Token::Kind::word && number.word.find_first_of("0123456789") == 0;
        if (hasTime)
            unit = takeWord("SEC");
    }
    if (hasTime) {
        const auto least = parseSeconds(number, unit);
        run.time = std::chrono::microseconds(static_cast<std::int64_t>(std::ceil(least * 1e6)));
        next = take();
        if (isWord(next, "MAXIMUM")) {
            number = takeWord("a number");
            if (parseSeconds(number, takeWord("SEC")) < least)
                refuse(number.line, fmt::format("RUNTEST: the MAXIMUM of {} seconds is below the minimum",
                                                shown(number.word)));
            next = take();
        }
    }
    if (isWord(next, "ENDSTATE")) {
        run.end = parseResting(takeWord("a state"));
        next = take();
    }
    insistOnEnd(next);
    return run;
}

StatePath Parser::parseStates() {
    StatePath path;
    Token last;
    for (auto word = takeWord("a state"); word.kind != Token::Kind::semicolon; word = take()) {
        const auto state = word.kind == Token::Kind::word ? stateOf(word.word) : std::nullopt;
        if (!state)
            refuse(word.line, fmt::format("STATE: '{}' is no state",
                                          word.kind == Token::Kind::word ? shown(word.word) : "("));
        path.states.push_back(*state);
        last = word;
    }
    parseResting(last);
    return path;
}

TestReset Parser::parseTestReset() {
    const auto word = takeWord("ON, OFF, Z or ABSENT");
    const auto name = upper(word.word);
    using enum TestReset::Mode;
    TestReset reset{absent};
    if (name == "ON")
        reset.mode = on;
    else if (name == "OFF")
        reset.mode = off;
    else if (name == "Z")
        reset.mode = highImpedance;
    else if (name != "ABSENT")
        refuse(word.line, fmt::format("TRST: '{}' is none of ON, OFF, Z and ABSENT", shown(word.word)));
    if (isWithoutTrst_)
        refuse(line_, "TRST follows TRST ABSENT");
    isWithoutTrst_ = reset.mode == absent;
    insistOnEnd(take());
    return reset;
}

} // namespace TAVO::jtag::svf
