#include <tavo/cli/jtag_serve/xvc.h>

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace TAVO::cli {

namespace {

constexpr std::string_view getInfo = "getinfo:";
constexpr std::string_view setTck = "settck:";
constexpr std::string_view shift = "shift:";
constexpr std::size_t sizeOfNumber = 4;
constexpr std::size_t mostBits = Xvc::announced * 8;
/// Made even if no register shifts, in bits.
constexpr std::size_t mostHeld = 512 * 1024;
constexpr std::uint64_t nanosecondsOfSecond = 1'000'000'000;

std::vector<std::uint8_t> bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

} // namespace

Xvc::Xvc(jtag::TapState state, const JtagAccess& access, Send send)
    : access_(access)
    , send_(std::move(send))
    , tracker_(state, access.timeOf) {}

bool Xvc::receive(std::span<const std::uint8_t> bytes) {
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
    while (!isOver_ && takeCommand()) {
    }
    buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(begin_));
    begin_ = 0;
    return !isOver_;
}

bool Xvc::begins(std::string_view command) const {
    const auto size = std::min(command.size(), buffer_.size() - begin_);
    return std::equal(command.begin(), command.begin() + static_cast<std::ptrdiff_t>(size),
                      buffer_.begin() + static_cast<std::ptrdiff_t>(begin_));
}

void Xvc::drop(std::size_t count) { begin_ += count; }

std::uint32_t Xvc::numberAt(std::size_t place) const {
    std::uint32_t number = 0;
    for (std::size_t byte = sizeOfNumber; byte-- > 0;)
        number = number << 8 | buffer_[begin_ + place + byte];
    return number;
}

bool Xvc::takeCommand() {
    const auto size = buffer_.size() - begin_;
    if (size == 0)
        return false;
    if (begins(getInfo)) {
        if (size < getInfo.size())
            return false;
        drop(getInfo.size());
        send_(bytesOf(fmt::format("xvcServer_v1.0:{}\n", announced)));
        return true;
    }
    // "s" begins both.
    if (begins(setTck) && size < setTck.size() + sizeOfNumber)
        return false;
    if (begins(setTck))
        return takePeriod();
    if (begins(shift))
        return size >= shift.size() + sizeOfNumber && takeShift();
    refuse("the client sent something that is no command of XVC 1.0");
    return false;
}

void Xvc::refuse(const std::string& why) {
    access_.warn(why);
    isOver_ = true;
}

bool Xvc::takePeriod() {
    const auto period = std::max(numberAt(setTck.size()), 1u);
    drop(setTck.size() + sizeOfNumber);
    exchange();
    const auto wanted = std::max<std::uint64_t>(nanosecondsOfSecond / period, 1);
    const auto set = static_cast<std::uint64_t>(access_.setFrequency(static_cast<std::int32_t>(wanted)));
    const auto actual = static_cast<std::uint32_t>((nanosecondsOfSecond + set - 1) / set);
    Bytes answer;
    for (unsigned byte = 0; byte < sizeOfNumber; ++byte)
        answer.push_back(static_cast<std::uint8_t>(actual >> 8 * byte));
    send_(answer);
    return true;
}

bool Xvc::takeShift() {
    const std::size_t bits = numberAt(shift.size());
    if (bits > mostBits) {
        refuse(fmt::format("the client shifts {} bits at once, more than {}", bits, mostBits));
        return false;
    }
    const auto bytes = jtag::BitString::bytesFor(bits);
    const auto head = shift.size() + sizeOfNumber;
    if (buffer_.size() - begin_ < head + 2 * bytes)
        return false;
    const auto partAt = [&](std::size_t place) {
        const auto first = buffer_.begin() + static_cast<std::ptrdiff_t>(begin_ + place);
        return jtag::BitString(bits, Bytes(first, first + static_cast<std::ptrdiff_t>(bytes)));
    };
    const auto tms = partAt(head);
    const auto tdi = partAt(head + bytes);
    drop(head + 2 * bytes);
    const bool isRead = shifts(tms);
    for (std::size_t bit = 0; bit < bits; ++bit)
        tracker_.clock(tms.at(bit), tdi.at(bit), isRead);
    isChanged_ = true;
    if (isRead) {
        send_(exchange().bytes());
    } else {
        send_(jtag::BitString(bits, true).bytes());
        if (tracker_.heldBits() >= mostHeld)
            exchange();
    }
    return true;
}

bool Xvc::shifts(const jtag::BitString& tms) const {
    using enum jtag::TapState;
    auto state = tracker_.state();
    for (std::size_t bit = 0; bit < tms.size(); ++bit) {
        if (state == shiftDr || state == shiftIr)
            return true;
        state = HWDebug::nextState(state, tms.at(bit));
    }
    return false;
}

jtag::BitString Xvc::exchange() {
    isChanged_ = false;
    const auto taken = tracker_.take();
    const auto results = taken.steps.empty() ? std::vector<jtag::BitString>() : access_.run(taken.steps);
    return wantedLevels(taken.wanted, results);
}

std::optional<Conversation::Milliseconds> Xvc::pause(Milliseconds silence) {
    if (isChanged_ && silence >= patience)
        exchange();
    return isChanged_ ? std::optional(patience) : std::nullopt;
}

void Xvc::end() {
    tracker_.letGo();
    exchange();
}

} // namespace TAVO::cli
