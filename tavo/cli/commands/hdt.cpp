#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>

namespace TAVO::cli {

namespace {

using HWDebug::Hdt;
using HWDebug::Hdt_v1_1;
using Json = nlohmann::json;

std::shared_ptr<Hdt> chooseHdt(Session& session, const ObjectOptions& options) {
    return chooseObject<Hdt>(session, options.object, "hdt");
}

std::shared_ptr<Hdt_v1_1> chooseNewerHdt(Session& session, const ObjectOptions& options) {
    return chooseObject<Hdt_v1_1>(session, options.object, "hdt above version 1.0");
}

using Lines = std::vector<bool>;

/// Status entries by key. Lines are apart, because there may be any number of them.
using Status = std::map<std::string, std::variant<Json, Lines>>;

/// The calls of one exchange, each with a conversion of its result.
class StatusReading {
public:
    template <class Result, class Show>
    void add(const char* key, std::shared_ptr<BoundMethod<Result>> method, Show show) {
        methods_.push_back(method);
        entries_.push_back({key, [method, show = std::move(show)] { return show(method->take()); }});
    }

    void run(Session& session) { session.runAll(methods_); }
    Status status() const {
        Status status;
        for (const auto& [key, value] : entries_)
            status[key] = value();
        return status;
    }

private:
    std::vector<std::shared_ptr<Method>> methods_;
    std::vector<std::pair<const char*, std::function<Status::mapped_type()>>> entries_;
};

Json levelOf(const dto::Header::iGetReply& reply) { return reply.level; }
Lines linesOf(Lines lines) { return lines; }
Lines linesOfBytes(const dto::hdt::OptionDbrdyMaskGetReply& reply) {
    Lines lines;
    for (const auto byte : reply.mask)
        lines.push_back(byte != 0);
    return lines;
}
Json enableOf(const dto::Header::EnableGetReply& reply) { return reply.enable; }
Json frequencyOf(const dto::hdt::FrequencyGetReply& reply) { return reply.frequency; }

void addNewer(StatusReading& reading, const Hdt_v1_1& hdt) {
    reading.add("dbrdyMask", hdt.getOptionDbrdyMaskGetMethod(), linesOfBytes);
    reading.add("dbreqSource", hdt.getIoDbreqSourceSnapshotGetMethod(),
                [](const auto& reply) { return Json(reply.source); });
    reading.add("dbreqOnTrigger", hdt.getOptionDbreqOnTriggerGetMethod(), [](const auto& reply) {
        return Json::array({{{"enable", reply.flag1}, {"trigger", reply.value1}},
                            {{"enable", reply.flag2}, {"trigger", reply.value2}}});
    });
    reading.add("frequency", hdt.getOptionFrequencyGetMethod(), frequencyOf);
}

Status readStatus(Session& session, const Hdt& hdt) {
    StatusReading reading;
    reading.add("enable", hdt.getEnableGetMethod(), enableOf);
    reading.add("dbreq", hdt.getIoDbreqGetMethod(), levelOf);
    reading.add("dbrdy", hdt.getIoDbrdyGetMethod(), linesOf);
    reading.add("dbrdySnapshot", hdt.getIoDbrdySnapShotGetMethod(), linesOf);
    reading.add("reset", hdt.getIoResetGetMethod(), levelOf);
    reading.add("pwrok", hdt.getIoPwrokGetMethod(), levelOf);
    const auto option = [](const auto& reply) { return Json(reply.enable); };
    reading.add("dbreqOnDbrdy", hdt.getOptionDbreqOnDbrdyGetMethod(), option);
    reading.add("dbreqOnReset", hdt.getOptionDbreqOnResetGetMethod(), option);
    reading.add("dbreqPulseWidth", hdt.getOptionDbreqPulseWidthGetMethod(),
                [](const auto& reply) { return Json(reply.pulseWidth); });
    if (const auto* newer = dynamic_cast<const Hdt_v1_1*>(&hdt))
        addNewer(reading, *newer);
    else
        reading.add("frequency", callOf(hdt, TAVOXTranscode::hdt_v1_0::frequencyGet), frequencyOf);
    reading.run(session);
    auto status = reading.status();
    status["object"] = Json(hdt.getFullName());
    return status;
}

void writeLines(JsonWriter& json, const Lines& lines) {
    json.array([&] {
        for (const bool line : lines)
            json.flag(line);
    });
}

void writeLines(TextWriter& text, const Lines& lines) {
    const char* separator = "";
    for (const bool line : lines)
        text.print("{}{}", std::exchange(separator, " "), line ? 1 : 0);
    text.write("\n");
}

std::string sourceText(std::int32_t source) {
    static constexpr const char* names[] = {"none", "command", "DBRDY", "reset", "trigger"};
    const bool known = source >= 0 && source < static_cast<std::int32_t>(std::size(names));
    return known ? fmt::format("{} {}", source, names[source]) : fmt::format("{}", source);
}

/// Prints the status, one name and value per line.
class StatusText {
public:
    StatusText(TextWriter& text, const Status& status)
        : text_(text)
        , status_(status) {}

    bool has(const char* key) const { return status_.contains(key); }
    const Json& value(const char* key) const { return std::get<Json>(status_.at(key)); }
    bool flag(const char* key) const { return value(key).get<bool>(); }

    void line(const char* name, const std::string& shown) { text_.print("{:<16}  {}\n", name, shown); }
    void onOff(const char* name, const char* key) { line(name, flag(key) ? "on" : "off"); }
    void lines(const char* name, const char* key) {
        text_.print("{:<16}  ", name);
        writeLines(text_, std::get<Lines>(status_.at(key)));
    }

private:
    TextWriter& text_;
    const Status& status_;
};

void write(TextWriter& text, const Status& status) {
    StatusText shown(text, status);
    shown.line("power good", shown.flag("pwrok") ? "yes" : "no");
    shown.line("in reset", shown.flag("reset") ? "yes" : "no");
    shown.line("DBREQ", shown.flag("dbreq") ? "1" : "0");
    shown.lines("DBRDY", "dbrdy");
    shown.lines("DBRDY snapshot", "dbrdySnapshot");
    if (shown.has("dbrdyMask")) {
        shown.lines("DBRDY mask", "dbrdyMask");
        shown.line("DBREQ source", sourceText(shown.value("dbreqSource").get<std::int32_t>()));
    }
    shown.onOff("enable", "enable");
    shown.onOff("DBREQ on DBRDY", "dbreqOnDbrdy");
    shown.onOff("DBREQ on reset", "dbreqOnReset");
    if (shown.has("dbreqOnTrigger"))
        for (const auto& choice : shown.value("dbreqOnTrigger"))
            shown.line("DBREQ on trigger",
                       choice["enable"].get<bool>()
                           ? fmt::format("on, trigger {}", choice["trigger"].get<std::int32_t>())
                           : "off");
    shown.line("DBREQ pulse", fmt::format("{} ns", shown.value("dbreqPulseWidth").get<std::int32_t>()));
    shown.line("frequency", fmt::format("{} Hz", shown.value("frequency").get<std::uint64_t>()));
}

void write(JsonWriter& json, const Status& status) {
    json.object([&] {
        for (const auto& [key, value] : status) {
            json.key(key);
            if (const auto* lines = std::get_if<Lines>(&value))
                writeLines(json, *lines);
            else
                json.write(std::get<Json>(value));
        }
    });
}

void showStatus(Session& session, Output& output, const ObjectOptions& options) {
    const auto hdt = chooseHdt(session, options);
    const auto status = readStatus(session, *hdt);
    output.show([&](JsonWriter& json) { write(json, status); },
                [&](TextWriter& text) { write(text, status); });
}

void showDone(Output& output, const Object_v1_0& object) {
    output.show({{"object", object.getFullName()}, {"returnCode", 0}});
}

const OptionRules onOrOff{.required = true, .choices = {"on", "off"}};

struct RequestOptions : ObjectOptions {
    std::string state;

    void describe(OptionList& list) { list.add("state", state, "on or off", onOrOff); }
};

void setRequest(Session& session, Output& output, const RequestOptions& options) {
    const auto hdt = chooseHdt(session, options);
    session.execute(hdt->getIoDbreqSetMethod(options.state == "on"));
    showDone(output, *hdt);
}

void clearSnapshots(Session& session, Output& output, const ObjectOptions& options) {
    const auto hdt = chooseHdt(session, options);
    std::vector<std::shared_ptr<Method>> batch{hdt->getIoDbrdySnapshotClearMethod()};
    if (const auto newer = std::dynamic_pointer_cast<Hdt_v1_1>(hdt))
        batch.push_back(newer->getIoDbreqSourceSnapshotClearMethod());
    session.runAll(batch);
    showDone(output, *hdt);
}

struct MaskOptions : ObjectOptions {
    std::vector<bool> lines;

    void describe(OptionList& list) {
        list.add("lines", lines, "0 or 1 for each line", {.choices = {"0", "1"}});
    }
};

void setOrShowMask(Session& session, Output& output, const MaskOptions& options) {
    const auto hdt = chooseNewerHdt(session, options);
    const auto get = hdt->getOptionDbrdyMaskGetMethod();
    std::vector<std::shared_ptr<Method>> batch;
    if (!options.lines.empty())
        batch.push_back(hdt->getOptionDbrdyMaskSet(options.lines));
    batch.push_back(get);
    session.runAll(batch);
    const auto mask = linesOfBytes(get->take());
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                writeLines(json.key("dbrdyMask"), mask);
                json.key("object").text(hdt->getFullName());
            });
        },
        [&](TextWriter& text) { writeLines(text, mask); });
}

struct TriggerOptions : ObjectOptions {
    std::int32_t trigger = 0;

    void describe(OptionList& list) {
        list.add("index", trigger, "Number of the trigger", {.required = true});
    }
};

void showTrigger(Session& session, Output& output, const TriggerOptions& options) {
    const auto hdt = chooseNewerHdt(session, options);
    const auto level = hdt->getIoTriggerGetMethod(options.trigger);
    const auto setup = hdt->getOptionTriggerSetupGetMethod(options.trigger);
    session.runAll({level, setup});
    const bool now = level->value().level;
    const auto values = setup->value();
    output.show({{"object", hdt->getFullName()},
                 {"trigger", options.trigger},
                 {"level", now},
                 {"setup",
                  {{"mode", values.value1},
                   {"edge", values.value2},
                   {"pulseWidth", values.value3},
                   {"count", values.value4},
                   {"delay", values.value5},
                   {"invert", values.value6},
                   {"source", values.value7}}}},
                [&](TextWriter& text) {
                    text.print(
                        "level {}\nmode {}, edge {}, pulse width {} ns, count {}, delay {} ns, invert {}, "
                        "source {}\n",
                        now ? 1 : 0, values.value1, values.value2, values.value3, values.value4,
                        values.value5, values.value6, values.value7);
                });
}

struct DriveOptions : TriggerOptions {
    std::string state;

    void describe(OptionList& list) {
        TriggerOptions::describe(list);
        list.add("state", state, "on or off", onOrOff);
    }
};

void setTrigger(Session& session, Output& output, const DriveOptions& options) {
    const auto hdt = chooseNewerHdt(session, options);
    session.execute(hdt->getIoTriggerSetMethod(options.trigger, options.state == "on"));
    showDone(output, *hdt);
}

} // namespace

std::vector<Command> hdtCommands() {
    return {
        command("hdt status", "Show all signals, snapshots and options", showStatus),
        command("hdt request", "Assert DBREQ (on) or release it (off)", setRequest),
        command("hdt snapshot clear", "Clear both", clearSnapshots),
        command("hdt mask", "Show or set which DBRDY lines take part", setOrShowMask),
        command("hdt trigger get", "Show the level and setup of a trigger", showTrigger),
        command("hdt trigger set", "Drive a trigger", setTrigger),
    };
}

} // namespace TAVO::cli
