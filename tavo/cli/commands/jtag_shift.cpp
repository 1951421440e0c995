#include <tavo/cli/commands/jtag.h>

#include <cstdint>
#include <optional>
#include <stdexcept>

#include <fmt/format.h>

#include <tavo/cli/user_input.h>
#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

/// Of all shifts of one command together: 2 MiB each way.
constexpr std::int64_t mostBits = std::int64_t{16} * 1024 * 1024;

struct Shift {
    JtagRegister target;
    BitString bits;
};

[[noreturn]] void refuse(const std::string& problem) {
    throw Failure(ExitCode::usage, problem + "; each shift is ir|dr BITS HEX");
}

JtagRegister parseTarget(const std::string& word) {
    if (word == "ir")
        return JtagRegister::instruction;
    if (word == "dr")
        return JtagRegister::data;
    refuse(fmt::format("'{}' is neither ir nor dr", word));
}

std::size_t parseCount(const std::string& word) {
    try {
        return static_cast<std::size_t>(parseWholeNumber(word, 0, mostBits));
    } catch (const std::invalid_argument& error) {
        refuse(fmt::format("BITS: {}", error.what()));
    }
}

std::vector<Shift> parseShifts(const std::vector<std::string>& words, BitNotation notation) {
    if (words.size() % 3 != 0)
        refuse(fmt::format("{} words do not make whole shifts", words.size()));
    std::vector<Shift> shifts;
    std::size_t bits = 0;
    for (std::size_t word = 0; word < words.size(); word += 3)
        try {
            const auto target = parseTarget(words[word]);
            const auto count = parseCount(words[word + 1]);
            bits += count;
            if (bits > static_cast<std::size_t>(mostBits))
                refuse(fmt::format("the shifts have more than {} bits together", mostBits));
            shifts.push_back({target, parseBits(count, words[word + 2], notation)});
        } catch (const std::invalid_argument& error) {
            refuse(error.what());
        }
    return shifts;
}

/// The lengths of the instruction registers, as given or found.
std::vector<std::size_t> chainLengths(Session& session, const Object_v1_0& jtag,
                                      const JtagShiftOptions& options) {
    if (!options.chain.empty())
        return parseInput([&] { return parseLengths(options.chain); });
    const auto found = survey(session, jtag);
    if (found.splits.size() != 1)
        throw Failure(ExitCode::refused, "the scan does not tell the lengths of the instruction registers: "
                                         "--chain gives them, see 'jtag scan'");
    return found.splits.front();
}

/// What a shift sends through the whole chain, and what of it concerns the user.
class Chain {
public:
    Chain(Session& session, const Object_v1_0& jtag, const JtagShiftOptions& options) {
        if (options.tap)
            place_ = parseInput([&] { return TapPlace(chainLengths(session, jtag, options), *options.tap); });
    }

    BitString sent(const Shift& shift) const {
        return place_ ? parseInput([&] { return place_->around(shift.target, shift.bits); }) : shift.bits;
    }
    BitString captured(const Shift& shift, const ShiftCall& call) const {
        const auto all = capturedBy(call);
        return place_ ? place_->inside(shift.target, all, shift.bits.size()) : all;
    }

private:
    std::optional<TapPlace> place_;
};

/// A scan leaves no TAP in BYPASS.
void requireInstructionFirst(const std::vector<Shift>& shifts, const JtagShiftOptions& options) {
    if (options.tap && options.chain.empty() && shifts.front().target == JtagRegister::data)
        throw Failure(ExitCode::usage, "the first shift must be ir: with --tap and without --chain the chain "
                                       "is reset, which puts no TAP in BYPASS");
}

const char* nameOf(JtagRegister target) { return target == JtagRegister::instruction ? "ir" : "dr"; }

std::string shown(const BitString& bits, BitNotation notation) {
    const auto text = bitsText(bits, notation);
    return text.empty() ? "-" : text;
}

/// A refused shift has captured nothing, whatever came with its return code.
std::string outcome(const Method& call, const BitString& captured, BitNotation notation) {
    return call.returnCode() == 0 ? "out " + shown(captured, notation)
                                  : fmt::format("return code {}", call.returnCode());
}

} // namespace

void JtagShiftOptions::describe(OptionList& list) {
    list.add("shift", shifts,
             "ir or dr, the number of bits, and the bits as a hexadecimal number, lowest bit first; "
             "repeat for more shifts",
             {.required = true, .valueName = "ir|dr BITS HEX"});
    list.add("--bytes", bytes, "HEX and results are bytes in shift order, lowest bit of each first");
    list.add("--tap", tap, "Shift through this TAP alone, 0 next to TDO: the others are put in BYPASS");
    list.add("--chain", chain,
             "Lengths of all instruction registers, that of TAP 0 first; default: found by a scan, which\n"
             "resets the chain",
             {.valueName = "LENGTH,...", .needs = {"--tap"}});
}

void shiftBits(Session& session, Output& output, const JtagShiftOptions& options) {
    const auto notation = options.bytes ? BitNotation::bytes : BitNotation::number;
    const auto shifts = parseShifts(options.shifts, notation);
    requireInstructionFirst(shifts, options);
    const auto jtag = chooseJtag(session, options);
    const Chain chain(session, *jtag, options);
    std::vector<ShiftCall> calls;
    calls.reserve(shifts.size());
    for (const auto& shift : shifts)
        calls.push_back(shiftCall(*jtag, shift.target, chain.sent(shift)));
    session.run({calls.begin(), calls.end()});

    std::vector<BitString> captured;
    captured.reserve(calls.size());
    for (std::size_t i = 0; i < calls.size(); ++i)
        captured.push_back(chain.captured(shifts[i], calls[i]));
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("notation").text(options.bytes ? "bytes" : "number");
                json.key("object").text(jtag->getFullName());
                json.key("shifts").array([&] {
                    for (std::size_t i = 0; i < calls.size(); ++i)
                        json.object([&] {
                            json.key("bits").number(shifts[i].bits.size());
                            json.key("in").text(bitsText(shifts[i].bits, notation));
                            json.key("out");
                            if (calls[i]->returnCode() == 0)
                                json.text(bitsText(captured[i], notation));
                            else
                                json.null();
                            json.key("register").text(nameOf(shifts[i].target));
                            json.key("returnCode").number(calls[i]->returnCode());
                        });
                });
                if (options.tap)
                    json.key("tap").number(*options.tap);
            });
        },
        [&](TextWriter& text) {
            text.write(options.bytes ? "bytes in the order of shifting\n"
                                     : "numbers, the lowest bit is shifted first\n");
            for (std::size_t i = 0; i < calls.size(); ++i)
                text.print("{} {}  in {}  {}\n", nameOf(shifts[i].target), shifts[i].bits.size(),
                           shown(shifts[i].bits, notation), outcome(*calls[i], captured[i], notation));
        });
    for (const auto& call : calls)
        requireSuccess(*call);
}

} // namespace TAVO::cli
