#include <tavo/cli/jtag_serve/remote_bitbang.h>

#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace TAVO::cli {

RemoteBitbang::RemoteBitbang(jtag::TapState state, const JtagAccess& access, Send send)
    : access_(access)
    , send_(std::move(send))
    , tracker_(state, access.timeOf) {}

bool RemoteBitbang::receive(std::span<const std::uint8_t> bytes) {
    for (const auto byte : bytes) {
        if (!take(static_cast<char>(byte)))
            return false;
        if (dueAnswers_ + reads_ >= mostHeldBits)
            settle();
        if (tracker_.heldBits() >= mostHeldBits || asked_.size() >= mostHeldBits ||
            dueAnswers_ >= mostHeldBits)
            exchange();
    }
    return true;
}

bool RemoteBitbang::take(char command) {
    constexpr std::string_view serialWire = "Oocdefg";
    if (command >= '0' && command <= '7')
        setPins(static_cast<unsigned>(command - '0'));
    else if (command == 'R')
        read();
    else if (command >= 'r' && command <= 'u')
        setResets(static_cast<unsigned>(command - 'r'));
    else if (command == 'Q')
        return false;
    else if (serialWire.find(command) != std::string_view::npos)
        warnOnce(command,
                 fmt::format("the client sent '{}', a command for SWD: there is only JTAG", command));
    else if (command != 'B' && command != 'b' && command != '\n' && command != '\r')
        warnOnce(command,
                 fmt::format("the client sent the byte 0x{:02x}, which is no command of remote_bitbang",
                             static_cast<unsigned char>(command)));
    return true;
}

void RemoteBitbang::warnOnce(char command, const std::string& text) {
    if (!std::exchange(warned_[static_cast<unsigned char>(command)], true))
        access_.warn(text);
}

bool RemoteBitbang::isShifting() const {
    return tracker_.state() == jtag::TapState::shiftDr || tracker_.state() == jtag::TapState::shiftIr;
}

void RemoteBitbang::setPins(unsigned levels) {
    const bool tck = (levels & 4) != 0;
    tms_ = (levels & 2) != 0;
    tdi_ = (levels & 1) != 0;
    if (std::exchange(tck_, tck) == tck)
        return;
    isChanged_ = true;
    if (tck) {
        hasRisen_ = true;
        risenTms_ = tms_;
        risenTdi_ = tdi_;
    } else if (hasRisen_) {
        clock(reads_ > 0);
    }
}

void RemoteBitbang::clock(bool isRead) {
    hasRisen_ = false;
    isRead |= access_.clocked != nullptr;
    tracker_.clock(risenTms_, risenTdi_, isRead);
    if (isRead)
        expect(true);
}

void RemoteBitbang::expect(bool isClock) {
    dueAnswers_ += reads_;
    asked_.push_back({std::exchange(reads_, 0), isClock, risenTms_, risenTdi_});
}

void RemoteBitbang::setResets(unsigned levels) {
    constexpr unsigned trst = 2;
    constexpr unsigned srst = 1;
    if ((levels & srst) != 0)
        warnOnce('s', "the client asserts SRST, which is no pin of a jtag object: ignored");
    settle();
    isChanged_ = true;
    const bool level = (levels & trst) == 0;
    tracker_.setTrst(level);
    if (access_.trstSet) {
        exchange();
        access_.trstSet(level);
    }
}

void RemoteBitbang::read() {
    // TDO changes when TCK falls: until then it is what the last clock found.
    if (tck_ && !hasRisen_) {
        if (!asked_.empty())
            exchange();
        return answer(1, lastLevel_);
    }
    if (isShifting()) {
        ++reads_;
    } else if (expectsAnswers()) {
        tracker_.readTdo();
        ++reads_;
        expect(false);
    } else {
        answer(1, true);
    }
}

void RemoteBitbang::answer(std::size_t count, bool level) {
    const std::vector<std::uint8_t> text(count, level ? '1' : '0');
    send_(text);
}

std::optional<Conversation::Milliseconds> RemoteBitbang::pause(Milliseconds silence) {
    if (hasRisen_ && reads_ > 0)
        clock(true);
    const bool isDue = silence >= patience || (reads_ > 0 && tracker_.usesPins());
    if (isDue)
        settle();
    if (isDue || expectsAnswers())
        exchange();
    return isChanged_ || reads_ > 0 ? std::optional(patience) : std::nullopt;
}

void RemoteBitbang::settle() {
    if (hasRisen_) {
        // It may be asked for after this.
        clock(true);
    } else if (reads_ > 0) {
        tracker_.readTdo();
        expect(false);
    }
}

void RemoteBitbang::exchange() {
    isChanged_ = hasRisen_;
    const auto taken = tracker_.take();
    const auto asked = std::exchange(asked_, {});
    dueAnswers_ = 0;
    const auto results = taken.steps.empty() ? std::vector<jtag::BitString>() : access_.run(taken.steps);
    const auto levels = wantedLevels(taken.wanted, results);
    std::vector<std::uint8_t> text;
    for (std::size_t place = 0; place < asked.size(); ++place) {
        lastLevel_ = levels.at(place);
        text.insert(text.end(), asked[place].answers, lastLevel_ ? '1' : '0');
        if (asked[place].isClock && access_.clocked)
            access_.clocked(asked[place].tms, asked[place].tdi, lastLevel_);
    }
    send_(text);
}

void RemoteBitbang::end() {
    reads_ = 0;
    settle();
    tracker_.letGo();
    exchange();
}

} // namespace TAVO::cli
