#include <tavo/cli/serial_serve/telnet.h>

#include <algorithm>

namespace TAVO::cli::telnet {

void appendEscaped(Bytes& to, std::span<const std::uint8_t> bytes) {
    for (const auto byte : bytes) {
        to.push_back(byte);
        if (byte == iac)
            to.push_back(iac);
    }
}

Bytes subnegotiation(Option option, std::uint8_t command, std::span<const std::uint8_t> value) {
    Bytes bytes{iac, sb, option, command};
    appendEscaped(bytes, value);
    bytes.push_back(iac);
    bytes.push_back(se);
    return bytes;
}

bool Reader::take(std::span<const std::uint8_t> bytes, Listener& listener) {
    while (!bytes.empty()) {
        if (state_ == State::data) {
            const auto plain =
                static_cast<std::size_t>(std::find(bytes.begin(), bytes.end(), iac) - bytes.begin());
            if (plain > 0)
                listener.data(bytes.first(plain));
            bytes = bytes.subspan(plain);
            if (bytes.empty())
                break;
            state_ = State::command;
            bytes = bytes.subspan(1);
            continue;
        }
        const auto byte = bytes.front();
        switch (state_) {
        case State::data:
            break;
        case State::command:
            // An escaped byte of data goes with what follows it.
            if (byte == iac)
                listener.data(bytes.first(1));
            takeCommand(byte, listener);
            break;
        case State::option:
            state_ = State::data;
            listener.negotiate(verb_, byte);
            break;
        case State::subnegotiation:
            if (byte == iac)
                state_ = State::subnegotiationCommand;
            else
                subnegotiation_.push_back(byte);
            break;
        case State::subnegotiationCommand:
            if (byte == iac) {
                subnegotiation_.push_back(iac);
                state_ = State::subnegotiation;
            } else if (byte == se) {
                state_ = State::data;
                listener.subnegotiate(subnegotiation_);
            } else {
                // Not ended in order: it does not count, but what stands here does.
                takeCommand(byte, listener);
            }
            break;
        }
        if (subnegotiation_.size() > longestSubnegotiation)
            return false;
        bytes = bytes.subspan(1);
    }
    return true;
}

void Reader::takeCommand(std::uint8_t byte, Listener& listener) {
    state_ = State::data;
    switch (byte) {
    case iac:
        break;
    case sb:
        subnegotiation_.clear();
        state_ = State::subnegotiation;
        break;
    case will:
    case wont:
    case doIt:
    case dont:
        verb_ = static_cast<Command>(byte);
        state_ = State::option;
        break;
    default:
        listener.command(byte);
    }
}

Options::Side* Options::find(std::uint8_t option) {
    const auto found = std::find_if(sides_.begin(), sides_.end(),
                                    [option](const Side& side) { return side.option == option; });
    return found == sides_.end() ? nullptr : &*found;
}

Bytes Options::take(Command verb, std::uint8_t option) {
    const bool isOffer = verb == will || verb == wont;
    const bool isYes = verb == will || verb == doIt;
    const std::uint8_t yes = isOffer ? doIt : will;
    const std::uint8_t no = isOffer ? dont : wont;
    auto* const side = find(option);
    if (!side)
        return isYes ? Bytes{iac, no, option} : Bytes();
    auto& state = isOffer ? side->theirs : side->ours;
    const auto before = state;
    state = isYes ? State::on : State::off;
    if (before == state || before == State::proposed)
        return {};
    return {iac, isYes ? yes : no, option};
}

Bytes Options::propose(Option option) {
    auto* const side = find(option);
    Bytes bytes;
    const auto add = [&](State& state, Command verb) {
        if (state != State::off)
            return;
        state = State::proposed;
        for (const std::uint8_t byte : {std::uint8_t{iac}, std::uint8_t{verb}, std::uint8_t{option}})
            bytes.push_back(byte);
    };
    add(side->ours, will);
    add(side->theirs, doIt);
    return bytes;
}

bool Options::isOn(Option option) const {
    return std::any_of(sides_.begin(), sides_.end(), [option](const Side& side) {
        return side.option == option && (side.ours == State::on || side.theirs == State::on);
    });
}

} // namespace TAVO::cli::telnet
