#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/interrupt.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/values/duration.h>

namespace TAVO::cli {

namespace {

namespace lpcPostCode_v1_0 = TAVOXTranscode::lpcPostCode_v1_0;
using dto::lpcPostCode::FifoEntry;
using HWDebug::LpcPostCode_v1_0;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

std::shared_ptr<LpcPostCode_v1_0> receiverOf(Session& session, const ObjectOptions& options) {
    return chooseObject<LpcPostCode_v1_0>(session, options.object, "POST code receiver");
}

struct FollowOptions : ObjectOptions {
    std::optional<double> timeout;
    std::string until;
    double interval = 0.1;

    void describe(OptionList& list) {
        list.add("--timeout", timeout, "End after this time; default: never",
                 {.kind = ValueKind::duration, .limits = between(0.0, 1e6), .valueName = "DURATION"});
        list.add("--until", until, "End after this code (hexadecimal); a timeout before it is a failure");
        list.add("--interval", interval, "Time between two polls",
                 {.showsDefault = true,
                  .kind = ValueKind::duration,
                  .limits = between(0.001, 1e6),
                  .valueName = "DURATION"});
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

void write(JsonWriter& json, const std::vector<FifoEntry>& entries) {
    json.array([&] {
        for (const auto& entry : entries)
            json.object([&] {
                json.key("code").number(entry.byte1);
                json.key("flags").number(entry.byte3);
                json.key("port").number(entry.byte2);
                json.key("time").number(entry.value);
            });
    });
}

std::vector<FifoEntry> takeEntries(Session& session, const LpcPostCode_v1_0& receiver) {
    const auto get = callOf(receiver, lpcPostCode_v1_0::fifoGet);
    session.runAll({get, receiver.make(lpcPostCode_v1_0::fifoClear)});
    return get->take().entries;
}

/// Takes codes from the device until the wanted code, the timeout or a signal.
class Follower {
public:
    Follower(Session& session, Output& output, const FollowOptions& options)
        : session_(session)
        , output_(output)
        , options_(options)
        , wanted_(parseCode(options.until))
        , receiver_(receiverOf(session, options)) {}

    bool hasWanted() const { return wanted_.has_value(); }

    /// Returns whether the wanted code arrived.
    bool follow() {
        const auto start = Clock::now();
        const auto ended = [&] {
            return options_.timeout && Clock::now() - start >= Seconds(*options_.timeout);
        };
        for (;;) {
            const bool last = ended();
            if (takeUntilWanted())
                return true;
            if (last)
                return false;
            InterruptWatch::pause(pauseUntilNext(start));
        }
    }

    void write(JsonWriter& json, bool reached) const {
        json.object([&] {
            cli::write(json.key("codes"), seen_);
            json.key("object").text(receiver_->getFullName());
            if (wanted_)
                json.key("reached").flag(reached);
        });
    }

private:
    std::chrono::milliseconds pauseUntilNext(Clock::time_point start) const {
        auto pause = Seconds(options_.interval);
        if (options_.timeout)
            pause = std::clamp(Seconds(*options_.timeout) - Seconds(Clock::now() - start), Seconds(0), pause);
        return std::chrono::ceil<std::chrono::milliseconds>(pause);
    }

    bool takeUntilWanted() {
        const auto entries = takeEntries(session_, *receiver_);
        bool reached = false;
        for (const auto& entry : entries) {
            if (output_.isJson())
                seen_.push_back(entry);
            else
                output_.print([&](TextWriter& text) { cli::write(text, entry); });
            reached = reached || entry.byte1 == wanted_;
        }
        if (!entries.empty() && !output_.isJson())
            output_.finish();
        return reached;
    }

    Session& session_;
    Output& output_;
    const FollowOptions& options_;
    std::optional<std::uint8_t> wanted_;
    std::shared_ptr<LpcPostCode_v1_0> receiver_;
    std::vector<FifoEntry> seen_;
};

void follow(Session& session, Output& output, const FollowOptions& options) {
    Follower follower(session, output, options);
    bool reached = false;
    const auto finish = [&] {
        output.show([&](JsonWriter& json) { follower.write(json, reached); }, [](TextWriter&) {});
        output.finish();
    };
    try {
        reached = follower.follow();
    } catch (...) {
        // The device no longer has these codes: output them now.
        finish();
        throw;
    }
    finish();
    if (follower.hasWanted() && !reached)
        throw Failure(ExitCode::refused, fmt::format("POST code {} did not arrive within {}", options.until,
                                                     durationText(*options.timeout)));
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
                write(json.key("codes"), entries);
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
