#include <tavo/simulator/vcd_writer.h>

#include <array>
#include <charconv>
#include <utility>

#include <tavo/simulator/internal/one_word.h>

namespace TAVO::simulator {

namespace {

constexpr std::size_t mostPieceBytes = std::size_t{1} << 16;

/// A short identifier of printable characters.
std::string wireId(std::size_t number) {
    constexpr std::size_t base = '~' - '!' + 1;
    std::string id;
    do {
        id += static_cast<char>('!' + number % base);
        number /= base;
    } while (number > 0);
    return id;
}

} // namespace

VcdWriter::VcdWriter(const std::vector<std::string>& scopes, Sink sink)
    : sink_(std::move(sink))
    // Half a clock at the usual 1 MHz, as near as a scale of 1, 10 or 100 comes.
    , text_("$comment Each clock takes two steps, whatever its frequency. $end\n$timescale 1 us $end\n") {
    std::size_t number = 0;
    for (const auto& name : scopes) {
        auto& scope = scopes_.emplace_back();
        text_ += "$scope module " + oneWord(name) + " $end\n";
        for (const auto& [wire, wireName] : {std::pair{&scope.tck, "tck"},
                                             {&scope.tms, "tms"},
                                             {&scope.tdi, "tdi"},
                                             {&scope.tdo, "tdo"},
                                             {&scope.trst, "trst"}}) {
            wire->id = wireId(number++);
            text_ += "$var wire 1 " + wire->id + " " + wireName + " $end\n";
        }
        text_ += "$upscope $end\n";
    }
    text_ += "$enddefinitions $end\n#0\n$dumpvars\n";
    for (const auto& scope : scopes_)
        for (const auto* wire : {&scope.tck, &scope.tms, &scope.tdi, &scope.tdo, &scope.trst})
            text_ += "1" + wire->id + "\n";
    text_ += "$end\n";
    step();
}

void VcdWriter::clock(std::size_t scope, bool tms, bool tdi, bool tdo) {
    auto& wires = scopes_.at(scope);
    change(wires.tck, false);
    change(wires.tms, tms);
    change(wires.tdi, tdi);
    change(wires.tdo, tdo);
    step();
    change(wires.tck, true);
    step();
}

void VcdWriter::trst(std::size_t scope, bool level) {
    change(scopes_.at(scope).trst, level);
    step();
}

void VcdWriter::flush() {
    const auto text = std::exchange(text_, {});
    if (!text.empty())
        sink_(text);
}

void VcdWriter::change(Wire& wire, bool level) {
    if (wire.level == level)
        return;
    wire.level = level;
    text_ += level ? '1' : '0';
    text_ += wire.id;
    text_ += '\n';
}

void VcdWriter::step() {
    // Readers take the last time of a dump for its end, so it is always there.
    std::array<char, 24> number{};
    const auto [end, error] = std::to_chars(number.data(), number.data() + number.size(), ++time_);
    text_ += '#';
    text_.append(number.data(), end);
    text_ += '\n';
    if (text_.size() >= mostPieceBytes)
        flush();
}

} // namespace TAVO::simulator
