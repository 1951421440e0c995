#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/simulator/export.h>

namespace TAVO::simulator {

/// Writes what happens at the pins of JTAG ports as a value change dump (IEEE 1364), for programs such as
/// GTKWave and sigrok.
///
/// Every port is a scope with the wires tck, tms, tdi, tdo and trst, which begin at 1. A clock takes two
/// steps: in the first TCK is low and the others change, in the second TCK is high. Time counts these steps,
/// whatever the frequency of TCK, and stands still between them. Not for several threads.
///
/// @code
/// VcdWriter vcd({"jtag"}, [&](std::string_view text) { out << text; });
/// vcd.clock(0, true, true, true);
/// vcd.flush();
/// @endcode
class TAVO_SIMULATOR_API VcdWriter {
public:
    using Sink = std::function<void(std::string_view)>;

    /// @param scopes their names. Characters that are not printable ASCII, and blanks, become `\xNN`.
    /// @param sink takes the text in pieces, of 64 KiB or when flushed. What it throws passes through.
    VcdWriter(const std::vector<std::string>& scopes, Sink sink);

    /// One clock of TCK with the levels at its rising edge.
    void clock(std::size_t scope, bool tms, bool tdi, bool tdo);
    void trst(std::size_t scope, bool level);
    /// Hands over everything so far: a whole dump to which more can be added. The destructor hands over
    /// nothing.
    void flush();

private:
    struct Wire {
        std::string id;
        bool level = true;
    };
    struct Scope {
        Wire tck, tms, tdi, tdo, trst;
    };

    void change(Wire& wire, bool level);
    void step();

    Sink sink_;
    std::vector<Scope> scopes_;
    std::uint64_t time_ = 0;
    std::string text_;
};

} // namespace TAVO::simulator
