#include <tavo/cli/commands/jtag.h>

#include <fmt/format.h>

#include <tavo/cli/tap_state_name.h>

namespace TAVO::cli {

namespace {

using HWDebug::Jtag_v1_0;
using HWDebug::Jtag_v1_1;

/// The options of one register.
struct ShiftOptions {
    std::int32_t repeat = 0;
    bool repeats = false;
    std::int32_t retry = 0;
    bool retries = false;
    std::int32_t terminationState = 0;
    BitString expected;
    BitString mask;
    /// Version 1.0 has none.
    std::optional<std::int32_t> preTck = {};
    std::optional<std::int32_t> postTck = {};
};

struct Options {
    ShiftOptions ir;
    ShiftOptions dr;
    dto::Base::FrequencyGetReply frequency;
    bool enable = false;
};

BitString bitsOf(std::int32_t bits, const std::vector<std::uint8_t>& bytes) {
    return {bits > 0 ? static_cast<std::size_t>(bits) : 0, bytes};
}

Options optionsOf(Session& session, const Jtag_v1_0& jtag) {
    using namespace dto::Jtag;
    const auto repeat = callOf<RepeatGetReply>(jtag, "repeatGet");
    const auto retry = callOf<RetryGetReply>(jtag, "retryGet");
    const auto expected = callOf<TdoExpectedGetReply>(jtag, "tdoExpectedGet");
    const auto irTermination = callOf<TerminationStateGetReply>(jtag, "terminationStateIRGet");
    const auto drTermination = callOf<TerminationStateGetReply>(jtag, "terminationStateDRGet");
    const auto frequency = callOf<dto::Base::FrequencyGetReply>(jtag, "tckFrequencyGet");
    const auto enable = callOf<dto::Header::EnableGetReply>(jtag, "enableGet");
    session.runAll({repeat, retry, expected, irTermination, drTermination, frequency, enable});
    ShiftOptions both{.repeat = repeat->value().count,
                      .repeats = repeat->value().enable,
                      .retry = retry->value().count,
                      .retries = retry->value().enable,
                      .expected = bitsOf(expected->value().bits, expected->value().expected),
                      .mask = bitsOf(expected->value().bits, expected->value().mask)};
    Options options{both, both, frequency->value(), enable->value().enable};
    options.ir.terminationState = irTermination->value().state;
    options.dr.terminationState = drTermination->value().state;
    return options;
}

Options optionsOf(Session& session, const Jtag_v1_1& jtag) {
    const auto repeatGet = jtag.getOptionRepeatGetMethod();
    const auto retryGet = jtag.getOptionRetryGetMethod();
    const auto expectedGet = jtag.getOptionTdoExpectedGetMethod();
    const auto terminationGet = jtag.getOptionTerminationStateGetMethod();
    const auto clocksGet = jtag.getOptionPrePostTckGetMethod();
    const auto frequencyGet = jtag.getOptionTckFrequencyGetMethod();
    const auto enableGet = jtag.getEnableGetMethod();
    session.runAll({repeatGet, retryGet, expectedGet, terminationGet, clocksGet, frequencyGet, enableGet});
    const auto repeat = repeatGet->value();
    const auto retry = retryGet->value();
    const auto expected = expectedGet->value();
    const auto termination = terminationGet->value();
    const auto clocks = clocksGet->value();
    return {{repeat.irCount, repeat.irEnable, retry.irCount, retry.irEnable, termination.irState,
             bitsOf(expected.irBits, expected.irExpected), bitsOf(expected.irBits, expected.irMask),
             clocks.value1, clocks.value2},
            {repeat.drCount, repeat.drEnable, retry.drCount, retry.drEnable, termination.drState,
             bitsOf(expected.drBits, expected.drExpected), bitsOf(expected.drBits, expected.drMask),
             clocks.value3, clocks.value4},
            frequencyGet->value(),
            enableGet->value().enable};
}

nlohmann::json documentOf(const ShiftOptions& options) {
    nlohmann::json document{
        {"repeat", {{"count", options.repeat}, {"enable", options.repeats}}},
        {"retry", {{"count", options.retry}, {"enable", options.retries}}},
        {"terminationState", options.terminationState},
        {"expected",
         {{"bits", options.expected.size()},
          {"value", bitsText(options.expected, BitNotation::number)},
          {"mask", bitsText(options.mask, BitNotation::number)}}},
    };
    if (options.preTck) {
        document["preTck"] = *options.preTck;
        document["postTck"] = *options.postTck;
    }
    return document;
}

std::string countText(std::int32_t count, bool enabled) {
    return fmt::format("{} times, {}", count, enabled ? "on" : "off");
}

std::string textOf(const char* name, const ShiftOptions& options) {
    auto text =
        fmt::format("{0} repeat       {1}\n{0} retry        {2}\n{0} termination  {3}\n", name,
                    countText(options.repeat, options.repeats), countText(options.retry, options.retries),
                    tapStateText(options.terminationState));
    if (options.preTck)
        text += fmt::format("{0} pre TCK      {1}\n{0} post TCK     {2}\n", name, *options.preTck,
                            *options.postTck);
    if (options.expected.size() == 0)
        return text + fmt::format("{} expected     nothing\n", name);
    return text + fmt::format("{} expected     {} in {} bits, mask {}\n", name,
                              bitsText(options.expected, BitNotation::number), options.expected.size(),
                              bitsText(options.mask, BitNotation::number));
}

} // namespace

void showJtagOptions(Session& session, Output& output, const JtagArguments& arguments) {
    const auto jtag = chooseJtag(session, arguments);
    const auto newer = std::dynamic_pointer_cast<Jtag_v1_1>(jtag);
    const auto options =
        newer ? optionsOf(session, *newer) : optionsOf(session, dynamic_cast<const Jtag_v1_0&>(*jtag));
    output.show({{"object", jtag->getFullName()},
                 {"enable", options.enable},
                 {"frequency", options.frequency.frequency},
                 {"divider", options.frequency.value},
                 {"ir", documentOf(options.ir)},
                 {"dr", documentOf(options.dr)}},
                fmt::format("enable          {}\nfrequency       {} Hz, divider {}\n{}{}",
                            options.enable ? "yes" : "no", options.frequency.frequency,
                            options.frequency.value, textOf("IR", options.ir), textOf("DR", options.dr)));
}

} // namespace TAVO::cli
