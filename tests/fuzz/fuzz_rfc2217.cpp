#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tavo/cli/serial_serve/rfc2217.h>
#include <tests/fuzz/fuzz_input.h>

// A client of `tavo serial serve --rfc2217`. Input: the size of the pieces, and its bytes. The pieces change
// neither the answers nor what happens to the line; what is sent is well-formed, also with a board that
// talks.

namespace {

using fuzz::require;
using TAVO::cli::LineSettings;

/// Notes what happens to it; echoes if it is told to.
class NotedLine final : public TAVO::cli::ServedLine {
public:
    explicit NotedLine(bool echoes)
        : echoes_(echoes) {}

    std::string exchange(std::string_view bytes) override {
        require(bytes.size() <= mostSentAtOnce, "what is sent is sent in parts");
        if (!bytes.empty() && (events.empty() || !events.back().starts_with('>')))
            events.emplace_back(">");
        if (!bytes.empty())
            events.back() += bytes;
        return echoes_ ? std::string(bytes) : "";
    }
    void dropReceived() override { events.emplace_back("drop"); }
    bool set(const LineSettings& settings) override {
        require(settings.baud > 0 && settings.dataBits >= 5 && settings.dataBits <= 8 &&
                    settings.stopBits >= 1 && settings.stopBits <= 2,
                "a port can have the settings");
        if (settings.baud > 1'000'000)
            return false;
        if (settings_ != settings)
            events.emplace_back("set");
        settings_ = settings;
        return true;
    }
    const LineSettings& settings() const override { return settings_; }
    bool sendBreak() override {
        events.emplace_back("break");
        return true;
    }
    bool works() const override { return true; }
    std::string name() const override { return "com"; }
    void warn(const std::string&) override { ++warnings; }

    std::vector<std::string> events;
    int warnings = 0;

private:
    bool echoes_;
    LineSettings settings_;
};

struct Outcome {
    bool goesOn = true;
    fuzz::Bytes answers;
    std::vector<std::string> events;
    bool operator==(const Outcome&) const = default;
};

/// Counts the bytes of data; every command must be whole.
std::size_t dataIn(fuzz::View bytes) {
    std::size_t data = 0;
    for (std::size_t at = 0; at < bytes.size();) {
        if (bytes[at] != 255) {
            ++data;
            ++at;
            continue;
        }
        require(at + 1 < bytes.size(), "a command is whole");
        const auto command = bytes[at + 1];
        at += 2;
        if (command == 255) {
            ++data;
        } else if (command == 250) {
            require(at + 1 < bytes.size() && bytes[at] == 44 && bytes[at + 1] >= 100 && bytes[at + 1] <= 112,
                    "an answer has the option and a known command");
            while (at + 1 < bytes.size() && !(bytes[at] == 255 && bytes[at + 1] == 240)) {
                require(bytes[at] != 255 || bytes[at + 1] == 255, "answers are escaped");
                at += bytes[at] == 255 ? 2 : 1;
            }
            require(at + 1 < bytes.size(), "an answer has its end");
            at += 2;
        } else {
            require(command >= 251 && at < bytes.size(), "a negotiation has its option");
            ++at;
        }
    }
    return data;
}

Outcome converse(fuzz::View bytes, std::size_t piece, bool echoes) {
    NotedLine line(echoes);
    Outcome outcome;
    TAVO::cli::Rfc2217 conversation(line, [&](std::span<const std::uint8_t> sent) {
        outcome.answers.insert(outcome.answers.end(), sent.begin(), sent.end());
    });
    std::size_t given = 0;
    while (outcome.goesOn && given < bytes.size()) {
        const auto part = bytes.subspan(given, std::min(piece, bytes.size() - given));
        given += part.size();
        outcome.goesOn = conversation.receive(part);
    }
    conversation.end();
    outcome.events = std::move(line.events);
    require(line.warnings == (outcome.goesOn ? 0 : 1), "a client is told of when it is sent away");
    return outcome;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    fuzz::Input input(bytes, length);
    const std::size_t piece = input.byte() + std::size_t{1};
    const auto client = input.rest();
    const auto whole = converse(client, std::max<std::size_t>(client.size(), 1), false);
    require(whole == converse(client, piece, false), "pieces change nothing");
    require(dataIn(whole.answers) == 0, "a silent board says nothing");
    // The shortest question is six bytes; the longest answer is that to it, with the name.
    require(whole.answers.size() <= 16 + 10 * client.size(), "answers are short");
    const auto echoed = converse(client, piece, true);
    require(dataIn(echoed.answers) <= client.size(), "an echo is no longer than what was said");
    return 0;
}
