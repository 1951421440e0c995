#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/command_group.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/number_check.h>
#include <tavo/cli/object_choice.h>

namespace TAVO::cli {

namespace {

using namespace dto::lpcPostCode;
using HWDebug::LpcPostCode_v1_0;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

struct Arguments {
    std::string object;
    std::string until;
    std::optional<double> timeout;
    double interval = 0.1;
};

std::shared_ptr<LpcPostCode_v1_0> receiverOf(Session& session, const Arguments& arguments) {
    return chooseObject<LpcPostCode_v1_0>(session, arguments.object, "POST code receiver");
}

std::optional<std::uint8_t> parseCode(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    const auto digits = text.substr(text.starts_with("0x") || text.starts_with("0X") ? 2 : 0);
    std::uint8_t code = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, code, 16);
    if (error != std::errc() || stop != end)
        throw Failure(ExitCode::usage, fmt::format("'{}' is no POST code, 00 to FF", text));
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
    const auto get = callOf<FifoGetReply>(receiver, "fifoGet");
    const auto clear = std::make_shared<Method>("fifoClear", receiver, dto::Params{});
    session.run({get, clear});
    requireSuccess(*get);
    requireSuccess(*clear);
    return get->take().entries;
}

/// Takes codes from the device until the wanted one, the end of the time or a signal comes.
class Follower {
public:
    Follower(Session& session, Output& output, const Arguments& arguments)
        : session_(session)
        , output_(output)
        , arguments_(arguments)
        , wanted_(parseCode(arguments.until))
        , receiver_(receiverOf(session, arguments)) {}

    bool hasWanted() const { return wanted_.has_value(); }

    /// Returns whether the wanted code came.
    bool follow() {
        const auto start = Clock::now();
        const auto ended = [&] {
            return arguments_.timeout && Clock::now() - start >= Seconds(*arguments_.timeout);
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
        auto pause = Seconds(arguments_.interval);
        if (arguments_.timeout)
            pause =
                std::clamp(Seconds(*arguments_.timeout) - Seconds(Clock::now() - start), Seconds(0), pause);
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
    const Arguments& arguments_;
    std::optional<std::uint8_t> wanted_;
    std::shared_ptr<LpcPostCode_v1_0> receiver_;
    std::vector<FifoEntry> seen_;
};

void follow(Session& session, Output& output, const Arguments& arguments) {
    Follower follower(session, output, arguments);
    bool reached = false;
    const auto finish = [&] {
        output.show([&](JsonWriter& json) { follower.write(json, reached); }, [](TextWriter&) {});
        output.finish();
    };
    try {
        reached = follower.follow();
    } catch (...) {
        // The device no longer has what was seen.
        finish();
        throw;
    }
    finish();
    if (follower.hasWanted() && !reached)
        throw Failure(ExitCode::refused, fmt::format("POST code {} did not come within {} s", arguments.until,
                                                     *arguments.timeout));
}

void list(Session& session, Output& output, const Arguments& arguments) {
    const auto receiver = receiverOf(session, arguments);
    const auto get = callOf<FifoGetReply>(*receiver, "fifoGet");
    const auto status = callOf<FifoStatusReply>(*receiver, "fifoStatusGet");
    const auto last = callOf<PostCodeGetReply>(*receiver, "postCodeGet");
    session.run({get, status, last});
    for (const auto& method : std::vector<std::shared_ptr<Method>>{get, status, last})
        requireSuccess(*method);

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

void clear(Session& session, Output& output, const Arguments& arguments) {
    const auto receiver = receiverOf(session, arguments);
    std::vector<std::shared_ptr<Method>> calls;
    for (const auto* name : {"fifoClear", "fifoStatusClear"})
        calls.push_back(std::make_shared<Method>(name, *receiver, dto::Params{}));
    session.run(calls);
    for (const auto& call : calls)
        requireSuccess(*call);
    output.show({{"object", receiver->getFullName()}});
}

} // namespace

void addPost(CLI::App& tool, Program& program) {
    CommandGroup<Arguments> post(tool, program, "post", "The POST codes of a booting board");
    auto& arguments = post.arguments();
    post.group().add_option("--object", arguments.object,
                            "Full name of the receiver; not needed where there is only one");

    auto* following = post.add("follow", "Show codes as they come, and take them from the device", follow);
    following
        ->add_option("--timeout", arguments.timeout, "After how many seconds it ends, never unless given")
        ->check(numberFrom(0.0, 1e6));
    following->add_option("--until", arguments.until,
                          "The code, in hexadecimal, after which it ends; a time-out before is a failure");
    following->add_option("--interval", arguments.interval, "How many seconds between two looks")
        ->check(numberFrom(0.001, 1e6))
        ->capture_default_str();

    post.add("list", "The codes that the device holds", list);
    post.add("clear", "Drop the codes that the device holds", clear);
}

} // namespace TAVO::cli
