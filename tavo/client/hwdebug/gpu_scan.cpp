#include <tavo/client/hwdebug/gpu_scan.h>

#include <tavo/client/transcode/convert_record.h>
#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::gpuScan_v1_0 {

constexpr auto table = tableOf(scan, optionSckFrequencyGet, optionSckFrequencySet, ioSckGet, ioSckSet,
                               ioSdoGet, enableGet, enableSet, headerStatusGet, headerStatusClear);

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(scan, optionSckFrequencyGet, optionSckFrequencySet, ioSckGet, ioSckSet, ioSdoGet,
                    enableGet, enableSet, headerStatusGet, headerStatusClear);

} // namespace TAVO::TAVOXTranscode::gpuScan_v1_0

namespace TAVO::HWDebug {

namespace gpuScan_v1_0 = TAVOXTranscode::gpuScan_v1_0;

namespace GpuScan_v1_0_Structs {

ScanGet::ScanGet(const dto::gpuScan::ScanReply& reply) { TAVOXTranscode::convertRecord(reply, *this); }

ScanGet::ScanGet(const dto::result& outcome)
    : ScanGet(dto::replyOf<dto::gpuScan::ScanReply>(outcome)) {}

GpuScanIoSck::GpuScanIoSck(const dto::Header::IoGetReply& reply) {
    TAVOXTranscode::convertRecord(reply, *this);
}

GpuScanIoSck::GpuScanIoSck(const dto::result& outcome)
    : GpuScanIoSck(dto::replyOf<dto::Header::IoGetReply>(outcome)) {}

GpuScanIoSck::operator dto::Header::IoGetReply() const {
    return TAVOXTranscode::converted<dto::Header::IoGetReply>(*this);
}

GpuScanSckFrequency::GpuScanSckFrequency(const dto::Base::FrequencyGetReply& reply) {
    TAVOXTranscode::convertRecord(reply, *this);
}

GpuScanSckFrequency::GpuScanSckFrequency(const dto::result& outcome)
    : GpuScanSckFrequency(dto::replyOf<dto::Base::FrequencyGetReply>(outcome)) {}

GpuScanSckFrequency::operator dto::Base::FrequencyGetReply() const {
    return TAVOXTranscode::converted<dto::Base::FrequencyGetReply>(*this);
}

} // namespace GpuScan_v1_0_Structs

std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::ScanGet>> GpuScan_v1_0::getScanMethod(int count) const {
    return make<GpuScan_v1_0_Structs::ScanGet>(gpuScan_v1_0::scan, count);
}

std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanSckFrequency>>
GpuScan_v1_0::getOptionSckFrequencyGetMethod() const {
    return make<GpuScan_v1_0_Structs::GpuScanSckFrequency>(gpuScan_v1_0::optionSckFrequencyGet);
}

std::shared_ptr<Method> GpuScan_v1_0::getOptionSckFrequencySetMethod(int frequency) const {
    return make(gpuScan_v1_0::optionSckFrequencySet, frequency);
}

std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanIoSck>> GpuScan_v1_0::getIoSckGetMethod() const {
    return make<GpuScan_v1_0_Structs::GpuScanIoSck>(gpuScan_v1_0::ioSckGet);
}

std::shared_ptr<Method> GpuScan_v1_0::getIoSckSetMethod(bool first, bool second) const {
    return make(gpuScan_v1_0::ioSckSet, first, second);
}

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> GpuScan_v1_0::getIoSdoGetMethod() const {
    return make(gpuScan_v1_0::ioSdoGet);
}

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> GpuScan_v1_0::getEnableGetMethod() const {
    return make(gpuScan_v1_0::enableGet);
}

std::shared_ptr<Method> GpuScan_v1_0::getEnableSetMethod(bool enable) const {
    return make(gpuScan_v1_0::enableSet, enable);
}

std::shared_ptr<BoundMethod<HeaderResult>> GpuScan_v1_0::getHeaderStatusGetMethod() const {
    return make<HeaderResult>(gpuScan_v1_0::headerStatusGet);
}

std::shared_ptr<Method> GpuScan_v1_0::getHeaderStatusClearMethod() const {
    return make(gpuScan_v1_0::headerStatusClear);
}

GpuScanFactory::GpuScanFactory()
    : TypeFactory("gpuScan", {servedBy<GpuScan_v1_0>("1.0")}) {}

} // namespace TAVO::HWDebug
