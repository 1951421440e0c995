#include <tavo/client/hwdebug/cpu_debug.h>

#include <utility>

#include <tavo/client/hwdebug/child.h>

namespace TAVO::HWDebug {

CpuDebug_v1_0::CpuDebug_v1_0(std::shared_ptr<Device> device, const std::string& name,
                             std::uint32_t instanceId, std::shared_ptr<Container> parent,
                             const TAVOXTranscode::cpuDebug_v1_0::EncoderList& encoders,
                             const TAVOXTranscode::cpuDebug_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

CpuDebug_v1_0::~CpuDebug_v1_0() = default;

void CpuDebug_v1_0::initalize() {
    jtag_ = requireChild<Jtag_v1_0>(*this, "jtag");
    hdt_ = requireChild<Hdt_v1_0>(*this, "hdt");
}

CpuDebug_v1_1::CpuDebug_v1_1(std::shared_ptr<Device> device, const std::string& name,
                             std::uint32_t instanceId, std::shared_ptr<Container> parent,
                             const TAVOXTranscode::cpuDebug_v1_1::EncoderList& encoders,
                             const TAVOXTranscode::cpuDebug_v1_1::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

CpuDebug_v1_1::~CpuDebug_v1_1() = default;

void CpuDebug_v1_1::initalize() {
    jtag_ = requireChild<Jtag_v1_1>(*this, "jtag");
    hdt_ = requireChild<Hdt_v1_1>(*this, "hdt");
}

std::shared_ptr<BoundMethod<HeaderResult>> CpuDebug_v1_1::getheaderStatusGetMethod() const {
    return prepare<HeaderResult>("headerStatusGet");
}

HwDebugFactory::HwDebugFactory()
    : ObjectFactory("cpuDebug") {}

std::shared_ptr<Container> HwDebugFactory::build(std::shared_ptr<Device> device,
                                                 std::shared_ptr<Container> parent, const std::string& name,
                                                 std::uint32_t instanceId,
                                                 std::shared_ptr<Object_v1_0> probe) {
    const auto version = probe->version();
    // "1" equals both; 1.1 comes first.
    if (version != Version("1.1") && version == Version("1.0")) {
        namespace tables = TAVOXTranscode::cpuDebug_v1_0;
        return create<CpuDebug_v1_0>(device, parent, name, instanceId, tables::encoders(),
                                     tables::decoders());
    }
    namespace tables = TAVOXTranscode::cpuDebug_v1_1;
    return create<CpuDebug_v1_1>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
