#include <tavo/cli/commands/commands.h>

#include <charconv>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/follow.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/session_access.h>
#include <tavo/cli/values/duration.h>
#include <tavo/toolkit/post_codes.h>

namespace TAVO::cli {

namespace {

namespace lpcPostCode_v1_0 = TAVOXTranscode::lpcPostCode_v1_0;
using dto::lpcPostCode::FifoEntry;
using HWDebug::LpcPostCode_v1_0;

std::shared_ptr<LpcPostCode_v1_0> receiverOf(Session& session, const ObjectOptions& options) {
    return chooseObject<LpcPostCode_v1_0>(session, options.object, "POST code receiver");
}

struct FollowOptions : ObjectOptions {
    Pace pace;
    std::string until;

    void describe(OptionList& list) {
        pace.describe(list);
        list.add("--until", until, "End after this code (hexadecimal); a timeout before it is a failure");
    }
};

std::optional<std::uint8_t> parseCode(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    const auto digits = text.substr(text.starts_with("0x") || text.starts_with("0X") ? 2 : 0);
    std::uint8_t code = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, code, 16);
    if (error != std::errc() || stop != end)
        throw Failure(ExitCode::usage, fmt::format("'{}' is not a POST code, 00 to FF", text));
    return code;
}

void write(TextWriter& text, const FifoEntry& entry) {
    text.print("{:13.6f}  {:02X}  port {:02X}  flags {:02X}\n", static_cast<double>(entry.value) / 1e6,
               entry.byte1, entry.byte2, entry.byte3);
}

void write(JsonWriter& json, const FifoEntry& entry) {
    json.object([&] {
        json.key("code").number(entry.byte1);
        json.key("flags").number(entry.byte3);
        json.key("port").number(entry.byte2);
        json.key("time").number(entry.value);
    });
}

/// Shows the codes that the device holds, takes them from it, and returns whether the wanted one is among
/// them.
bool showAndTake(Session& session, Output& output, const LpcPostCode_v1_0& receiver,
                 std::optional<std::uint8_t> wanted) {
    bool reached = false;
    requireOffer(receiver, lpcPostCode_v1_0::fifoGet.name);
    SessionAccess access(session);
    for (const auto& entry : toolkit::takeCodes(access, receiver)) {
        output.showNext([&](JsonWriter& json) { write(json, entry); },
                        [&](TextWriter& text) { write(text, entry); });
        reached = reached || entry.byte1 == wanted;
    }
    return reached;
}

void follow(Session& session, Output& output, const FollowOptions& options) {
    const auto wanted = parseCode(options.until);
    const auto receiver = receiverOf(session, options);
    const bool reached =
        lookRepeatedly(options.pace, [&] { return showAndTake(session, output, *receiver, wanted); });
    if (wanted && !reached)
        throw Failure(ExitCode::refused, fmt::format("POST code {} did not arrive within {}", options.until,
                                                     durationText(*options.pace.timeout)));
}

void list(Session& session, Output& output, const ObjectOptions& options) {
    const auto receiver = receiverOf(session, options);
    const auto get = callOf(*receiver, lpcPostCode_v1_0::fifoGet);
    const auto status = callOf(*receiver, lpcPostCode_v1_0::fifoStatusGet);
    const auto last = callOf(*receiver, lpcPostCode_v1_0::postCodeGet);
    session.runAll({get, status, last});

    const auto entries = get->take().entries;
    const auto state = status->value();
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("codes").array([&] {
                    for (const auto& entry : entries)
                        write(json, entry);
                });
                json.key("last").number(last->value().postCode);
                json.key("object").text(receiver->getFullName());
                json.key("status").write({{"value", state.value},
                                          {"flag1", state.flag1},
                                          {"flag2", state.flag2},
                                          {"flag3", state.flag3},
                                          {"flag4", state.flag4}});
            });
        },
        [&](TextWriter& text) {
            for (const auto& entry : entries)
                write(text, entry);
        });
}

void clear(Session& session, Output& output, const ObjectOptions& options) {
    const auto receiver = receiverOf(session, options);
    session.runAll(
        {receiver->make(lpcPostCode_v1_0::fifoClear), receiver->make(lpcPostCode_v1_0::fifoStatusClear)});
    output.show({{"object", receiver->getFullName()}});
}

} // namespace

std::vector<Command> postCommands() {
    return {
        command("post follow", "Show codes as they arrive, and take them from the device", follow),
        command("post list", "Show the codes that the device holds", list),
        command("post clear", "Drop the codes that the device holds", clear),
    };
}

} // namespace TAVO::cli
