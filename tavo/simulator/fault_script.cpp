#include <tavo/simulator/fault_script.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>

namespace TAVO::simulator {

namespace {

[[noreturn]] void refuse(std::string_view piece, const std::string& why) {
    throw std::invalid_argument("fault '" + std::string(piece) + "': " + why);
}

template <class Number>
Number numberFrom(std::string_view fault, std::string_view text, const char* what) {
    const bool negative = std::numeric_limits<Number>::is_signed && text.substr(0, 1) == "-";
    auto digits = negative ? text.substr(1) : text;
    const bool hexadecimal = digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X";
    digits.remove_prefix(hexadecimal ? 2 : 0);
    std::uint64_t magnitude = 0;
    const auto parsed =
        std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, hexadecimal ? 16 : 10);
    const auto most = static_cast<std::uint64_t>(std::numeric_limits<Number>::max()) + (negative ? 1 : 0);
    if (digits.empty() || parsed.ec != std::errc{} || parsed.ptr != digits.data() + digits.size() ||
        magnitude > most)
        refuse(fault, "'" + std::string(text) + "' is no " + what);
    return static_cast<Number>(negative ? 0 - magnitude : magnitude);
}

/// Removes and returns the text before the separator, or all of it. `found` says whether there was one.
std::string_view takePiece(std::string_view& rest, char separator, bool* found = nullptr) {
    const auto end = rest.find(separator);
    const bool hasSeparator = end != std::string_view::npos;
    if (found)
        *found = hasSeparator;
    const auto piece = rest.substr(0, end);
    rest.remove_prefix(hasSeparator ? end + 1 : rest.size());
    return piece;
}

/// One fault in text form, split into name and value.
struct Piece {
    std::string_view whole;
    std::string_view name;
    std::optional<std::string_view> value;

    std::string_view needed(const char* form) const {
        if (!value || value->empty())
            refuse(whole, "expected " + std::string(name) + "=" + form);
        return *value;
    }
    void expectNoValue() const {
        if (value)
            refuse(whole, std::string(name) + " takes no value");
    }
};

Fault sizeFrom(const Piece& piece) {
    auto rest = piece.needed("FIELD:BYTES");
    const auto field = takePiece(rest, ':');
    faults::Size size;
    if (field == "status")
        size.field = faults::Size::Field::status;
    else if (field == "error")
        size.field = faults::Size::Field::error;
    else if (field == "result")
        size.field = faults::Size::Field::result;
    else
        refuse(piece.whole, "'" + std::string(field) + "' is none of status, error, result");
    size.bytes = numberFrom<std::uint32_t>(piece.whole, rest, "number of bytes");
    return size;
}

Fault deviceErrorFrom(const Piece& piece) {
    auto rest = piece.needed("CODE:RESULTS[:MESSAGE]");
    faults::DeviceError error;
    error.code = numberFrom<std::uint32_t>(piece.whole, takePiece(rest, ':'), "error code");
    error.results = numberFrom<std::uint32_t>(piece.whole, takePiece(rest, ':'), "number of results");
    error.message = std::string(rest);
    return error;
}

Fault returnCodeFrom(const Piece& piece) {
    auto rest = piece.needed("CODE[:INDEX]");
    faults::ReturnCode code;
    bool hasIndex = false;
    code.code = numberFrom<std::int32_t>(piece.whole, takePiece(rest, ':', &hasIndex), "return code");
    if (hasIndex)
        code.index = numberFrom<std::uint32_t>(piece.whole, rest, "position of a call");
    return code;
}

Fault faultFrom(const Piece& piece) {
    if (piece.name == "silent" || piece.name == "close" || piece.name == "reset") {
        piece.expectNoValue();
        if (piece.name == "silent")
            return faults::Silent{};
        return piece.name == "close" ? Fault(faults::Close{}) : Fault(faults::Reset{});
    }
    if (piece.name == "dribble") {
        if (!piece.value)
            return faults::Dribble{};
        const auto pause = numberFrom<std::uint32_t>(piece.whole, *piece.value, "number of microseconds");
        return faults::Dribble{std::chrono::microseconds(pause)};
    }
    if (piece.name == "stray") {
        if (!piece.value)
            return faults::Stray{};
        return faults::Stray{numberFrom<std::uint32_t>(piece.whole, *piece.value, "number of bytes")};
    }
    if (piece.name == "cut")
        return faults::Cut{numberFrom<std::uint32_t>(piece.whole, piece.needed("BYTES"), "number of bytes")};
    if (piece.name == "count")
        return faults::Count{
            numberFrom<std::uint32_t>(piece.whole, piece.needed("RESULTS"), "number of results")};
    if (piece.name == "size")
        return sizeFrom(piece);
    if (piece.name == "error")
        return deviceErrorFrom(piece);
    if (piece.name == "return")
        return returnCodeFrom(piece);
    refuse(piece.whole, "'" + std::string(piece.name) + "' is no kind of fault");
}

} // namespace

bool isOfDelivery(const Fault& fault) {
    return std::holds_alternative<faults::Silent>(fault) || std::holds_alternative<faults::Dribble>(fault) ||
           std::holds_alternative<faults::Cut>(fault) || std::holds_alternative<faults::Close>(fault) ||
           std::holds_alternative<faults::Reset>(fault);
}

FaultScript::FaultScript() = default;

FaultScript FaultScript::parse(std::string_view text) {
    FaultScript script;
    while (!text.empty()) {
        auto line = takePiece(text, '\n');
        line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
        line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
        if (!line.empty() && line.front() != '#')
            script.add(line);
    }
    return script;
}

std::string FaultScript::grammar() {
    return "A fault is REQUEST:FAULT. Requests are counted from 1, over all connections. FAULT is one of\n"
           "  silent                        there is no answer\n"
           "  dribble[=MICROSECONDS]        the answer arrives byte by byte, with pauses\n"
           "  cut=BYTES                     the connection is closed after this many bytes of the answer\n"
           "  close                         the connection is closed instead of an answer\n"
           "  reset                         the connection is reset instead of an answer\n"
           "  count=RESULTS                 the answer announces another number of results\n"
           "  size=FIELD:BYTES              the answer announces another size; FIELD is status,\n"
           "                                error or result (the first one)\n"
           "  stray[=BYTES]                 extra bytes follow the answer\n"
           "  error=CODE:RESULTS[:MESSAGE]  a device error after this many results\n"
           "  return=CODE[:INDEX]           the return code of the call at this position, from 0\n"
           "A request may have several faults, but only one of silent, dribble, cut, close, reset.\n"
           "Numbers are decimal, or hexadecimal after 0x. Example: 3:cut=17\n";
}

FaultScript& FaultScript::add(std::string_view text) {
    auto rest = text;
    bool found = false;
    const auto number = takePiece(rest, ':', &found);
    if (!found)
        refuse(text, "expected REQUEST:FAULT");
    const auto request = numberFrom<std::uint64_t>(text, number, "request number");
    Piece piece{text, takePiece(rest, '=', &found), std::nullopt};
    if (found)
        piece.value = rest;
    return at(request, faultFrom(piece));
}

FaultScript& FaultScript::at(std::uint64_t request, Fault fault) {
    if (request == 0)
        throw std::invalid_argument("requests are counted from 1, there is no request 0");
    if (isOfDelivery(fault))
        for (const auto& other : faultsAt(request))
            if (isOfDelivery(other))
                throw std::invalid_argument("request " + std::to_string(request) +
                                            " has two of silent, dribble, cut, close, reset");
    faults_.emplace(request, std::move(fault));
    return *this;
}

std::vector<Fault> FaultScript::faultsAt(std::uint64_t request) const {
    std::vector<Fault> found;
    const auto [begin, end] = faults_.equal_range(request);
    for (auto entry = begin; entry != end; ++entry)
        found.push_back(entry->second);
    return found;
}

} // namespace TAVO::simulator
