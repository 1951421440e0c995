#include <tavo/cli/rom_serve/serprog.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace TAVO::cli {

namespace {

constexpr std::uint8_t acknowledged = 0x06;
constexpr std::uint8_t refused = 0x15;

enum SerprogCommand : std::uint8_t {
    nothing = 0x00,
    queryInterface = 0x01,
    queryCommands = 0x02,
    queryName = 0x03,
    queryBuffer = 0x04,
    queryBuses = 0x05,
    queryLongestWrite = 0x08,
    synchronise = 0x10,
    queryLongestRead = 0x11,
    setBus = 0x12,
    operate = 0x13,
    setFrequency = 0x14,
    setPins = 0x15,
};

constexpr std::array known{nothing,    queryInterface,    queryCommands, queryName,        queryBuffer,
                           queryBuses, queryLongestWrite, synchronise,   queryLongestRead, setBus,
                           operate,    setFrequency,      setPins};

constexpr std::uint8_t spiBus = 0x08;
constexpr std::size_t operationHead = 7;
/// What is collected before it is sent.
constexpr std::size_t manyAnswers = 65536;

std::size_t parametersOf(std::uint8_t command) {
    switch (command) {
    case setBus:
    case setPins:
        return 1;
    case setFrequency:
        return 4;
    case operate:
        return operationHead - 1;
    default:
        return 0;
    }
}

std::uint32_t numberIn(std::span<const std::uint8_t> bytes) {
    std::uint32_t number = 0;
    for (std::size_t i = bytes.size(); i-- > 0;)
        number = number << 8 | bytes[i];
    return number;
}

std::vector<std::uint8_t> numberBytes(std::uint32_t number, unsigned count) {
    std::vector<std::uint8_t> bytes;
    for (unsigned i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
    return bytes;
}

std::vector<std::uint8_t> commandMap() {
    std::vector<std::uint8_t> bits(32);
    for (const auto command : known)
        bits[command / 8] = static_cast<std::uint8_t>(bits[command / 8] | 1u << command % 8);
    return bits;
}

std::vector<std::uint8_t> programmerName() {
    constexpr std::string_view name = "tavo";
    std::vector<std::uint8_t> bytes(name.begin(), name.end());
    bytes.resize(16);
    return bytes;
}

} // namespace

Serprog::Serprog(const FlashAccess& access, Send send)
    : access_(access)
    , send_(std::move(send)) {}

bool Serprog::receive(std::span<const std::uint8_t> bytes) {
    buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
    while (takeCommand()) {
        if (answers_.size() >= manyAnswers)
            sendAnswers();
    }
    buffer_.erase(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(begin_));
    begin_ = 0;
    sendAnswers();
    return true;
}

bool Serprog::takeCommand() {
    const auto there = std::span(buffer_).subspan(begin_);
    if (skipped_ > 0) {
        const auto count = std::min(skipped_, there.size());
        begin_ += count;
        skipped_ -= count;
        if (count > 0 && skipped_ == 0)
            answer(false);
        return count > 0;
    }
    if (there.empty() || there.size() < 1 + parametersOf(there[0]))
        return false;
    auto size = 1 + parametersOf(there[0]);
    if (there[0] == operate) {
        const auto sent = numberIn(there.subspan(1, 3));
        if (sent > longestTaken || numberIn(there.subspan(4, 3)) > longestRead) {
            begin_ += size;
            skipped_ = sent;
            if (sent == 0)
                answer(false);
            return true;
        }
        size += sent;
        if (there.size() < size)
            return false;
    }
    // What comes of it may throw.
    begin_ += size;
    execute(there.first(size));
    return true;
}

void Serprog::execute(Command command) {
    switch (command[0]) {
    case nothing:
        return answer(true);
    case queryInterface:
        return answer(true, numberBytes(1, 2));
    case queryCommands:
        return answer(true, commandMap());
    case queryName:
        return answer(true, programmerName());
    case queryBuffer:
        return answer(true, numberBytes(0xFFFF, 2));
    case queryBuses:
        return answer(true, {spiBus});
    case queryLongestWrite:
        return answer(true, numberBytes(longestWrite, 3));
    case synchronise:
        answer(false);
        return answer(true);
    case queryLongestRead:
        return answer(true, numberBytes(longestRead, 3));
    case setBus:
        return answer(command[1] == spiBus);
    case operate:
        return transfer(command);
    case setFrequency: {
        // No clock runs between the client and the memory.
        const auto hertz = numberIn(command.subspan(1));
        return hertz == 0 ? answer(false) : answer(true, numberBytes(hertz, 4));
    }
    case setPins:
        if (command[1] != 0)
            return answer(true);
        sendAnswers();
        isTouched_ = false;
        patience_ = patience;
        return answer(access_.release());
    default:
        return answer(false);
    }
}

void Serprog::transfer(Command command) {
    isTouched_ = true;
    const auto received = access_.transfer(command.subspan(operationHead), numberIn(command.subspan(4, 3)));
    answer(received.has_value(), received.value_or(Bytes()));
}

void Serprog::answer(bool isDone, const Bytes& more) {
    answers_.push_back(isDone ? acknowledged : refused);
    answers_.insert(answers_.end(), more.begin(), more.end());
}

void Serprog::sendAnswers() {
    if (!answers_.empty())
        send_(std::exchange(answers_, {}));
}

std::optional<Conversation::Milliseconds> Serprog::pause(Milliseconds silence) {
    if (isTouched_ && silence >= patience_) {
        isTouched_ = false;
        if (access_.settle())
            patience_ = std::min(2 * patience_, longestPatience);
    }
    return isTouched_ ? std::optional(patience_) : std::nullopt;
}

void Serprog::end() { access_.leave(); }

} // namespace TAVO::cli
