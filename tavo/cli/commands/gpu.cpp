#include <tavo/cli/commands/commands.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/command_group.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/values/bit_string.h>

namespace TAVO::cli {

namespace {

using HWDebug::GpuDebug_v1_0;
using HWDebug::GpuScan_v1_0;
using HWDebug::KelvorGpuDebugMux_v1_0;

struct Arguments {
    std::string object;
    std::int32_t bits = 64;
    bool bytes = false;
    std::optional<std::int32_t> mode;
};

void scan(Session& session, Output& output, const Arguments& arguments) {
    const auto gpuScan = chooseObject<GpuScan_v1_0>(session, arguments.object, "gpuScan");
    const auto call = gpuScan->getScanMethod(arguments.bits);
    session.execute(call);
    auto data = call->take().data;
    if (data.size() != BitString::bytesFor(static_cast<std::size_t>(arguments.bits)))
        throw Failure(ExitCode::protocol, fmt::format("{} scanned {} bytes for {} bits",
                                                      gpuScan->getFullName(), data.size(), arguments.bits));
    const BitString bits(static_cast<std::size_t>(arguments.bits), std::move(data));
    const auto notation = arguments.bytes ? BitNotation::bytes : BitNotation::number;
    output.show(
        [&](JsonWriter& json) {
            json.object([&] {
                json.key("bits").number(arguments.bits);
                json.key("data").text(bitsText(bits, notation));
                json.key("notation").text(arguments.bytes ? "bytes" : "number");
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

void setOrShowMode(Session& session, Output& output, const Arguments& arguments) {
    const auto object = arguments.object.empty()
                            ? chooseObject<GpuDebug_v1_0>(session, "", "gpuDebug")
                            : chooseObject<GpuDebug_v1_0, KelvorGpuDebugMux_v1_0>(
                                  session, arguments.object, "gpuDebug or kelvorGpuDebugMux");
    if (const auto* mux = dynamic_cast<const KelvorGpuDebugMux_v1_0*>(object.get()))
        setOrShowModeOf(session, output, *mux, arguments.mode);
    else
        setOrShowModeOf(session, output, dynamic_cast<const GpuDebug_v1_0&>(*object), arguments.mode);
}

} // namespace

void addGpu(CLI::App& tool, Program& program) {
    CommandGroup<Arguments> gpu(tool, program, "gpu", "Use a graphics processor's debug connector");
    auto& arguments = gpu.arguments();
    gpu.group().add_option("--object", arguments.object,
                           "Full name of the object; needed when there are several");
    auto* scanning = gpu.add("scan", "Scan bits, shown as a number whose lowest bit came first", scan);
    scanning->add_option("bits", arguments.bits, "How many")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    scanning->add_flag("--bytes", arguments.bytes, "Show bytes in the order of scanning");
    gpu.add("mode", "Tell the mode of the header, or set it", setOrShowMode)
        ->add_option("mode", arguments.mode, "A number that the device defines");
}

} // namespace TAVO::cli
