#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The part of Telnet (RFC 854, 855) that RFC 2217 stands on. Knows no sockets.
namespace TAVO::cli::telnet {

using Bytes = std::vector<std::uint8_t>;

enum Command : std::uint8_t {
    se = 240,
    brk = 243,
    sb = 250,
    will = 251,
    wont = 252,
    doIt = 253,
    dont = 254,
    iac = 255,
};

enum Option : std::uint8_t { binary = 0, suppressGoAhead = 3, comPort = 44 };

/// The bytes, with IAC doubled.
void appendEscaped(Bytes& to, std::span<const std::uint8_t> bytes);
Bytes subnegotiation(Option option, std::uint8_t command, std::span<const std::uint8_t> value);

/// Who is told what a client sent.
class Listener {
public:
    virtual ~Listener() = default;
    virtual void data(std::span<const std::uint8_t> bytes) = 0;
    /// @param verb one of will, wont, doIt and dont.
    virtual void negotiate(Command verb, std::uint8_t option) = 0;
    /// @param bytes the option and what follows, without escapes.
    virtual void subnegotiate(std::span<const std::uint8_t> bytes) = 0;
    /// Any other command.
    virtual void command(std::uint8_t command) = 0;
};

/// Takes the stream of a client apart, wherever it is cut.
class Reader {
public:
    /// No subnegotiation of RFC 2217 is longer than the text of a signature.
    static constexpr std::size_t longestSubnegotiation = 1024;

    /// @return false for a subnegotiation that is too long; then nothing more is read.
    bool take(std::span<const std::uint8_t> bytes, Listener& listener);

private:
    enum class State { data, command, option, subnegotiation, subnegotiationCommand };

    void takeCommand(std::uint8_t byte, Listener& listener);

    State state_ = State::data;
    Command verb_ = will;
    Bytes subnegotiation_;
};

/// Which options are on, and what to answer: a proposal that changes nothing is not answered, so that no two
/// ends go on answering each other.
class Options {
public:
    /// @return the three bytes to answer, or none.
    Bytes take(Command verb, std::uint8_t option);
    /// Proposes an option for both directions, unless it is on or proposed.
    Bytes propose(Option option);
    bool isOn(Option option) const;

private:
    enum class State { off, proposed, on };
    struct Side {
        Option option = binary;
        State ours = State::off;
        State theirs = State::off;
    };

    Side* find(std::uint8_t option);

    std::array<Side, 3> sides_{{{binary}, {suppressGoAhead}, {comPort}}};
};

} // namespace TAVO::cli::telnet
