#include <tavo/cli/values/i2c_messages.h>

#include <optional>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>

#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

constexpr std::int64_t highestAddress = 0x7f;
constexpr std::int64_t mostBytes = 65535;

[[noreturn]] void refuse(const std::string& problem) { throw std::invalid_argument(problem); }

std::uint32_t parseNumber(std::string_view text, std::int64_t highest, const std::string& word,
                          const char* what) {
    try {
        return static_cast<std::uint32_t>(parseWholeNumber(text, 0, highest));
    } catch (const std::invalid_argument& error) {
        refuse(fmt::format("'{}': {}: {}", word, what, error.what()));
    }
}

class Parser {
public:
    explicit Parser(std::span<const std::string> words)
        : words_(words) {}

    std::vector<I2cMessage> parse() {
        std::vector<I2cMessage> messages;
        while (!words_.empty())
            messages.push_back(takeMessage());
        return messages;
    }

private:
    I2cMessage takeMessage() {
        const std::string& word = words_.front();
        words_ = words_.subspan(1);
        if (word.empty() || (word.front() != 'r' && word.front() != 'w'))
            refuse(
                fmt::format("'{}' begins no message: rLENGTH[@ADDRESS] or wLENGTH[@ADDRESS] BYTE...", word));
        const auto at = word.find('@');
        I2cMessage message;
        message.reads = word.front() == 'r';
        const auto length =
            parseNumber(std::string_view(word).substr(1, at - 1), mostBytes, word, "number of bytes");
        if (at != std::string::npos)
            address_ = parseNumber(std::string_view(word).substr(at + 1), highestAddress, word, "address");
        if (!address_)
            refuse(fmt::format("'{}' has no address: the first message needs one", word));
        message.address = *address_;
        if (message.reads)
            message.count = length;
        else
            message.data = takeBytes(word, length);
        return message;
    }

    std::vector<std::uint8_t> takeBytes(const std::string& word, std::uint32_t length) {
        std::vector<std::uint8_t> bytes;
        while (bytes.size() < length) {
            if (words_.empty())
                refuse(fmt::format("'{}' is followed by {} of {} bytes", word, bytes.size(), length));
            takeByte(bytes, length);
        }
        return bytes;
    }

    /// Takes a byte, and all that its suffix stands for.
    void takeByte(std::vector<std::uint8_t>& bytes, std::uint32_t length) {
        const std::string& word = words_.front();
        words_ = words_.subspan(1);
        auto text = std::string_view(word);
        const char suffix = text.empty() ? '\0' : text.back();
        const bool continues = suffix == '=' || suffix == '+' || suffix == '-';
        if (continues)
            text.remove_suffix(1);
        auto byte = parseNumber(text, 0xff, word, "byte");
        bytes.push_back(static_cast<std::uint8_t>(byte));
        const std::uint32_t step = suffix == '+' ? 1 : suffix == '-' ? 0xff : 0;
        while (continues && bytes.size() < length)
            bytes.push_back(static_cast<std::uint8_t>(byte += step));
    }

    std::span<const std::string> words_;
    std::optional<std::uint32_t> address_;
};

} // namespace

std::vector<I2cMessage> parseI2cMessages(std::span<const std::string> words) { return Parser(words).parse(); }

} // namespace TAVO::cli
