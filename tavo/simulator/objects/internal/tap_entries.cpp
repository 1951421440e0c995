#include <tavo/simulator/objects/internal/tap_entries.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include <tavo/simulator/objects/internal/json_entries.h>

namespace TAVO::simulator {

namespace {

using nlohmann::json;

// Bounds for what a call costs that goes through them, and for their memory.
constexpr std::int64_t longestRegister = 1'000'000;
constexpr std::size_t mostBits = 16'000'000;
constexpr unsigned idcodeLength = 32;
// Of many FPGAs and CPLDs, whatever the length of their instructions.
constexpr std::uint64_t usualIdcodeInstruction = 0x09;

[[noreturn]] void refuse(const std::string& name, const json& entry, const std::string& expected) {
    throw std::invalid_argument("'" + name + "' is " + entry.dump() + ": expected " + expected);
}

std::string bitsText(std::size_t bits) { return std::to_string(bits) + (bits == 1 ? " bit" : " bits"); }

unsigned digitValue(char digit) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto lower = digit >= 'A' && digit <= 'F' ? static_cast<char>(digit - 'A' + 'a') : digit;
    return static_cast<unsigned>(digits.find(lower));
}

/// A number of at most `length` bits, as a JSON number or hexadecimal text.
PackedBits bitsOf(const std::string& name, const json& entry, std::size_t length) {
    const auto expected = "a number of at most " + bitsText(length) + ", such as 5 or \"0x05\"";
    PackedBits bits;
    if (entry.is_number_unsigned()) {
        bits = PackedBits::ofNumber(64, entry.get<std::uint64_t>());
    } else {
        const auto text = entry.is_string() ? entry.get<std::string>() : "";
        if (!text.starts_with("0x") || text.size() == 2 ||
            text.find_first_not_of("0123456789abcdefABCDEF", 2) != std::string::npos)
            refuse(name, entry, expected);
        for (auto digit = text.size(); digit-- > 2;)
            for (unsigned bit = 0; bit < 4; ++bit)
                bits.append((digitValue(text[digit]) >> bit & 1) != 0);
    }
    for (auto bit = length; bit < bits.size(); ++bit)
        if (bits.at(bit))
            refuse(name, entry, expected);
    bits.resize(length);
    return bits;
}

std::int64_t countOf(JsonEntries& entries, const std::string& name, std::int64_t least, std::int64_t most) {
    const auto expected = "a number from " + std::to_string(least) + " to " + std::to_string(most);
    const auto count = entries.require<std::int64_t>(name, expected.c_str());
    if (count < least || count > most)
        refuse(name, json(count), expected);
    return count;
}

/// An instruction that is neither BYPASS nor taken.
std::uint64_t instructionOf(const TapDescription& tap, const std::string& name, const json& entry) {
    const auto instruction = bitsOf(name, entry, tap.irLength).number();
    if (instruction == tap.bypass())
        refuse(name, entry, "another instruction than BYPASS, which is all ones");
    const bool isTaken =
        (tap.idcode && instruction == tap.idcodeInstruction) ||
        std::ranges::find(tap.registers, instruction, &TapRegister::instruction) != tap.registers.end();
    if (isTaken)
        refuse(name, entry, "an instruction that selects no other register of the TAP");
    return instruction;
}

TapRegister readRegister(const TapDescription& tap, const json& source) {
    JsonEntries entries(source);
    TapRegister made;
    const auto* instruction = entries.find("instruction");
    if (!instruction)
        throw std::invalid_argument("'instruction' is missing: expected a number of " +
                                    bitsText(tap.irLength));
    made.instruction = instructionOf(tap, "instruction", *instruction);
    made.length = static_cast<std::size_t>(countOf(entries, "length", 1, longestRegister));
    if (const auto* capture = entries.find("capture"))
        made.capture = bitsOf("capture", *capture, made.length);
    made.keeps = entries.take<bool>("keeps", "true or false", false);
    entries.finish();
    return made;
}

template <class Read>
void readList(const std::string& name, const json& list, Read read) {
    if (!list.is_array())
        refuse(name, list, "a list");
    for (std::size_t i = 0; i < list.size(); ++i)
        try {
            read(list[i]);
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(name + "[" + std::to_string(i) + "]: " + error.what());
        }
}

void readIdcode(TapDescription& tap, JsonEntries& entries) {
    const auto* idcode = entries.find("idcode");
    const auto* instruction = entries.find("idcodeInstruction");
    if (!idcode && instruction)
        throw std::invalid_argument("'idcodeInstruction' is there without 'idcode'");
    if (!idcode)
        return;
    const auto value = bitsOf("idcode", *idcode, idcodeLength).number();
    if ((value & 1) == 0)
        refuse("idcode", *idcode, "an odd number: bit 0 of an identification is 1");
    if (instruction)
        tap.idcodeInstruction = instructionOf(tap, "idcodeInstruction", *instruction);
    else if (usualIdcodeInstruction < tap.bypass())
        tap.idcodeInstruction = usualIdcodeInstruction;
    else
        throw std::invalid_argument("'idcodeInstruction' is missing: expected a number of " +
                                    bitsText(tap.irLength));
    tap.idcode = static_cast<std::uint32_t>(value);
}

TapDescription readTap(const json& source) {
    JsonEntries entries(source);
    TapDescription tap;
    tap.name = entries.take<std::string>("name", "text", "");
    tap.irLength = static_cast<unsigned>(
        countOf(entries, "irLength", TapDescription::shortestIr, TapDescription::longestIr));
    if (const auto* capture = entries.find("irCapture")) {
        tap.irCapture = bitsOf("irCapture", *capture, tap.irLength).number();
        if ((tap.irCapture & 0b11) != 0b01)
            refuse("irCapture", *capture, "a number whose lowest two bits are 01");
    }
    readIdcode(tap, entries);
    if (const auto* registers = entries.find("registers"))
        readList("registers", *registers,
                 [&](const json& one) { tap.registers.push_back(readRegister(tap, one)); });
    entries.finish();
    return tap;
}

} // namespace

std::vector<TapDescription> readTaps(const json& list) {
    std::vector<TapDescription> taps;
    readList("taps", list, [&](const json& one) { taps.push_back(readTap(one)); });
    std::size_t bits = 0;
    for (const auto& tap : taps)
        for (const auto& one : tap.registers)
            bits += one.length;
    if (bits > mostBits)
        throw std::invalid_argument("'taps' has registers of " + bitsText(bits) + ": expected at most " +
                                    std::to_string(mostBits));
    return taps;
}

} // namespace TAVO::simulator
