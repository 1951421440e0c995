#include <tavo/cli/commands/jtag.h>

#include <cstdint>
#include <stdexcept>

#include <fmt/format.h>

#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

/// Of all shifts of one command together: 2 MiB each way.
constexpr std::int64_t mostBits = 16 * 1024 * 1024;

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
}

void shiftBits(Session& session, Output& output, const JtagShiftOptions& options) {
    const auto notation = options.bytes ? BitNotation::bytes : BitNotation::number;
    const auto shifts = parseShifts(options.shifts, notation);
    const auto jtag = chooseJtag(session, options);
    std::vector<ShiftCall> calls;
    calls.reserve(shifts.size());
    for (const auto& shift : shifts)
        calls.push_back(shiftCall(*jtag, shift.target, shift.bits));
    session.run({calls.begin(), calls.end()});

    std::vector<BitString> captured;
    captured.reserve(calls.size());
    for (const auto& call : calls)
        captured.push_back(capturedBy(call));
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
