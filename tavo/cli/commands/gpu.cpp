#include <tavo/cli/commands/commands.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/values/bit_notation.h>

namespace TAVO::cli {

namespace {

using HWDebug::GpuDebug_v1_0;
using HWDebug::GpuScan_v1_0;
using HWDebug::KelvorGpuDebugMux_v1_0;

struct ScanOptions : ObjectOptions {
    std::int32_t bits = 64;
    bool bytes = false;

    void describe(OptionList& list) {
        list.add("bits", bits, "Number of bits", {.showsDefault = true, .limits = notNegative()});
        list.add("--bytes", bytes, "Show bytes in scan order");
    }
};

void scan(Session& session, Output& output, const ScanOptions& options) {
    const auto gpuScan = chooseObject<GpuScan_v1_0>(session, options.object, "gpuScan");
    auto data = session.value(*gpuScan, TAVOXTranscode::gpuScan_v1_0::scan, options.bits).data;
    if (data.size() != BitString::bytesFor(static_cast<std::size_t>(options.bits)))
        throw Failure(ExitCode::protocol, fmt::format("{} scanned {} bytes for {} bits",
                                                      gpuScan->getFullName(), data.size(), options.bits));
    const BitString bits(static_cast<std::size_t>(options.bits), std::move(data));
    const auto notation = options.bytes ? BitNotation::bytes : BitNotation::number;
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("bits").number(options.bits);
                json.key("data").text(bitsText(bits, notation));
                json.key("notation").text(options.bytes ? "bytes" : "number");
                json.key("object").text(gpuScan->getFullName());
            });
        },
        [&](TextWriter& text) { text.print("{}\n", bitsText(bits, notation)); });
}

template <class Proxy>
void setOrShowModeOf(Session& session, Output& output, const Proxy& object,
                     std::optional<std::int32_t> mode) {
    std::vector<std::shared_ptr<Method>> batch;
    if (mode)
        batch.push_back(object.getHeaderModeSetMethod(*mode));
    const auto get = object.getHeaderModeGetMethod();
    batch.push_back(get);
    session.runAll(batch);
    const auto now = get->value().mode;
    output.show({{"object", object.getFullName()}, {"mode", now}},
                [&](TextWriter& text) { text.print("{}\n", now); });
}

struct ModeOptions : ObjectOptions {
    std::optional<std::int32_t> mode;

    void describe(OptionList& list) { list.add("mode", mode, "A number that the device defines"); }
};

void setOrShowMode(Session& session, Output& output, const ModeOptions& options) {
    const auto object = options.object.empty()
                            ? chooseObject<GpuDebug_v1_0>(session, "", "gpuDebug")
                            : chooseObject<GpuDebug_v1_0, KelvorGpuDebugMux_v1_0>(
                                  session, options.object, "gpuDebug or kelvorGpuDebugMux");
    if (const auto* mux = dynamic_cast<const KelvorGpuDebugMux_v1_0*>(object.get()))
        setOrShowModeOf(session, output, *mux, options.mode);
    else
        setOrShowModeOf(session, output, dynamic_cast<const GpuDebug_v1_0&>(*object), options.mode);
}

} // namespace

std::vector<Command> gpuCommands() {
    return {
        command("gpu scan", "Scan bits and show them as a number, first bit lowest", scan),
        command("gpu mode", "Show or set the header mode", setOrShowMode),
    };
}

} // namespace TAVO::cli
