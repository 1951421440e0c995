#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/cli/jtag_serve/jtag_access.h>
#include <tests/jtag/chain_model.h>

namespace tool_test {

/// A conversation of a cable's protocol in front of a modelled chain.
template <class Protocol>
class Cable {
public:
    using Milliseconds = TAVO::cli::Conversation::Milliseconds;

    bool type(std::string_view text) {
        const std::vector<std::uint8_t> bytes(text.begin(), text.end());
        return conversation.receive(bytes);
    }
    /// The same, cut in two with a pause between.
    bool type(std::string_view text, std::size_t cut, Milliseconds silence) {
        if (!type(text.substr(0, cut)))
            return false;
        conversation.pause(Milliseconds(0));
        if (silence.count() > 0)
            conversation.pause(silence);
        return type(text.substr(cut));
    }

    jtag_test::ChainModel chain;
    jtag_test::ModelPort port{chain};
    int exchanges = 0;
    std::vector<std::string> warnings;
    std::string answers;
    std::int32_t frequency = 1'000'000;
    TAVO::cli::JtagAccess access{
        [this](const TAVO::jtag::Steps& steps) {
            ++exchanges;
            return port.run(steps);
        },
        [this](std::int32_t hertz) { return frequency = hertz < 3 ? 1 : hertz / 3 * 2; },
        [](std::uint64_t clocks) { return std::chrono::microseconds(static_cast<std::int64_t>(clocks)); },
        [this](const std::string& warning) { warnings.push_back(warning); }};
    Protocol conversation{
        TAVO::jtag::TapState::testLogicReset, access,
        [this](std::span<const std::uint8_t> bytes) { answers.append(bytes.begin(), bytes.end()); }};
};

} // namespace tool_test
