#include <tavo/cli/commands/jtag.h>

#include <fmt/format.h>

#include <tavo/cli/values/tap_state_name.h>

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
    /// Empty for version 1.0.
    std::optional<std::int32_t> preTck = {};
    std::optional<std::int32_t> postTck = {};
};

struct Options {
    ShiftOptions ir;
    ShiftOptions dr;
    dto::Base::FrequencyGetReply frequency;
    bool enable = false;
};

/// Never more bits than arrived, whatever number the device announces.
BitString bitsOf(std::int32_t bits, const std::vector<std::uint8_t>& bytes) {
    const auto size = bits > 0 ? static_cast<std::size_t>(bits) : 0;
    if (bytes.size() < BitString::bytesFor(size))
        throw Failure(ExitCode::protocol,
                      fmt::format("the device gave {} bytes for {} expected bits", bytes.size(), size));
    return {size, bytes};
}

Options optionsOf(Session& session, const Jtag_v1_0& jtag) {
    using namespace TAVOXTranscode;
    const auto repeat = callOf(jtag, jtag_v1_0::repeatGet);
    const auto retry = callOf(jtag, jtag_v1_0::retryGet);
    const auto expected = callOf(jtag, jtag_v1_0::tdoExpectedGet);
    const auto irTermination = callOf(jtag, jtag_v1_0::terminationStateIRGet);
    const auto drTermination = callOf(jtag, jtag_v1_0::terminationStateDRGet);
    const auto frequency = callOf(jtag, jtag_v1_0::tckFrequencyGet);
    const auto enable = callOf(jtag, jtag_v1_0::enableGet);
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

void write(JsonWriter& json, const ShiftOptions& options) {
    json.object([&] {
        json.key("expected").object([&] {
            json.key("bits").number(options.expected.size());
            json.key("mask").text(bitsText(options.mask, BitNotation::number));
            json.key("value").text(bitsText(options.expected, BitNotation::number));
        });
        if (options.preTck) {
            json.key("postTck").number(*options.postTck);
            json.key("preTck").number(*options.preTck);
        }
        json.key("repeat").write({{"count", options.repeat}, {"enable", options.repeats}});
        json.key("retry").write({{"count", options.retry}, {"enable", options.retries}});
        json.key("terminationState").number(options.terminationState);
    });
}

std::string countText(std::int32_t count, bool enabled) {
    return fmt::format("{} times, {}", count, enabled ? "on" : "off");
}

void write(TextWriter& text, const char* name, const ShiftOptions& options) {
    text.print("{0} repeat       {1}\n{0} retry        {2}\n{0} termination  {3}\n", name,
               countText(options.repeat, options.repeats), countText(options.retry, options.retries),
               tapStateText(options.terminationState));
    if (options.preTck)
        text.print("{0} pre TCK      {1}\n{0} post TCK     {2}\n", name, *options.preTck, *options.postTck);
    if (options.expected.size() == 0)
        text.print("{} expected     nothing\n", name);
    else
        text.print("{} expected     {} in {} bits, mask {}\n", name,
                   bitsText(options.expected, BitNotation::number), options.expected.size(),
                   bitsText(options.mask, BitNotation::number));
}

} // namespace

void showJtagOptions(Session& session, Output& output, const ObjectOptions& chosen) {
    const auto jtag = chooseJtag(session, chosen);
    const auto newer = std::dynamic_pointer_cast<Jtag_v1_1>(jtag);
    const auto options =
        newer ? optionsOf(session, *newer) : optionsOf(session, dynamic_cast<const Jtag_v1_0&>(*jtag));
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("divider").number(options.frequency.value);
                write(json.key("dr"), options.dr);
                json.key("enable").flag(options.enable);
                json.key("frequency").number(options.frequency.frequency);
                write(json.key("ir"), options.ir);
                json.key("object").text(jtag->getFullName());
            });
        },
        [&](TextWriter& text) {
            text.print("enable          {}\nfrequency       {} Hz, divider {}\n",
                       options.enable ? "yes" : "no", options.frequency.frequency, options.frequency.value);
            write(text, "IR", options.ir);
            write(text, "DR", options.dr);
        });
}

} // namespace TAVO::cli
