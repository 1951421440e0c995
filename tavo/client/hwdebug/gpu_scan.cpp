#include <tavo/client/hwdebug/gpu_scan.h>

#include <utility>

namespace TAVO::HWDebug {

using TAVOXTranscode::makeRequest;

namespace GpuScan_v1_0_Structs {

ScanGet::ScanGet(const dto::gpuScan::ScanReply& reply)
    : data(reply.data) {}

ScanGet::ScanGet(const dto::result& outcome)
    : ScanGet(dto::replyOf<dto::gpuScan::ScanReply>(outcome)) {}

GpuScanIoSck::GpuScanIoSck(const dto::Header::IoGetReply& reply)
    : first(reply.first)
    , second(reply.second) {}

GpuScanIoSck::GpuScanIoSck(const dto::result& outcome)
    : GpuScanIoSck(dto::replyOf<dto::Header::IoGetReply>(outcome)) {}

GpuScanIoSck::operator dto::Header::IoGetReply() const {
    dto::Header::IoGetReply reply;
    reply.first = first;
    reply.second = second;
    return reply;
}

GpuScanSckFrequency::GpuScanSckFrequency(const dto::Base::FrequencyGetReply& reply)
    : frequency(reply.frequency)
    , value(reply.value) {}

GpuScanSckFrequency::GpuScanSckFrequency(const dto::result& outcome)
    : GpuScanSckFrequency(dto::replyOf<dto::Base::FrequencyGetReply>(outcome)) {}

GpuScanSckFrequency::operator dto::Base::FrequencyGetReply() const {
    dto::Base::FrequencyGetReply reply;
    reply.frequency = frequency;
    reply.value = value;
    return reply;
}

} // namespace GpuScan_v1_0_Structs

GpuScan_v1_0::GpuScan_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                           std::shared_ptr<Container> parent,
                           const TAVOXTranscode::gpuScan_v1_0::EncoderList& encoders,
                           const TAVOXTranscode::gpuScan_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

GpuScan_v1_0::~GpuScan_v1_0() = default;

std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::ScanGet>> GpuScan_v1_0::getScanMethod(int count) const {
    return prepare<GpuScan_v1_0_Structs::ScanGet>("scan", makeRequest<dto::gpuScan::ScanRequest>(count));
}

std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanSckFrequency>>
GpuScan_v1_0::getOptionSckFrequencyGetMethod() const {
    return prepare<GpuScan_v1_0_Structs::GpuScanSckFrequency>("optionSckFrequencyGet");
}

std::shared_ptr<Method> GpuScan_v1_0::getOptionSckFrequencySetMethod(int frequency) const {
    return prepare("optionSckFrequencySet", makeRequest<dto::Jtag::OptionTckFrequencySetRequest>(frequency));
}

std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanIoSck>> GpuScan_v1_0::getIoSckGetMethod() const {
    return prepare<GpuScan_v1_0_Structs::GpuScanIoSck>("ioSckGet");
}

std::shared_ptr<Method> GpuScan_v1_0::getIoSckSetMethod(bool first, bool second) const {
    return prepare("ioSckSet", makeRequest<dto::Header::IoSetRequest>(first, second));
}

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> GpuScan_v1_0::getIoSdoGetMethod() const {
    return prepare<dto::Header::iGetReply>("ioSdoGet");
}

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> GpuScan_v1_0::getEnableGetMethod() const {
    return prepare<dto::Header::EnableGetReply>("enableGet");
}

std::shared_ptr<Method> GpuScan_v1_0::getEnableSetMethod(bool enable) const {
    return prepare("enableSet", makeRequest<dto::Header::EnableSetRequest>(enable));
}

std::shared_ptr<BoundMethod<HeaderResult>> GpuScan_v1_0::getHeaderStatusGetMethod() const {
    return prepare<HeaderResult>("headerStatusGet");
}

std::shared_ptr<Method> GpuScan_v1_0::getHeaderStatusClearMethod() const {
    return prepare("headerStatusClear");
}

GpuScanFactory::GpuScanFactory()
    : ObjectFactory("gpuScan") {}

std::shared_ptr<Container> GpuScanFactory::build(std::shared_ptr<Device> device,
                                                 std::shared_ptr<Container> parent, const std::string& name,
                                                 std::uint32_t instanceId,
                                                 std::shared_ptr<Object_v1_0> probe) {
    // The version is asked for as in every factory, and no version is refused.
    static_cast<void>(probe->version());
    namespace tables = TAVOXTranscode::gpuScan_v1_0;
    return create<GpuScan_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
