#include <tavo/client/hwdebug/gpu_scan.h>

#include <tavo/client/transcode/internal/conversions.h>
#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::gpuScan_v1_0 {

TAVO_METHODS(scan, optionSckFrequencyGet, optionSckFrequencySet, ioSckGet, ioSckSet, ioSdoGet, enableGet,
             enableSet, headerStatusGet, headerStatusClear);

} // namespace TAVO::TAVOXTranscode::gpuScan_v1_0

namespace TAVO::HWDebug {

namespace gpuScan_v1_0 = TAVOXTranscode::gpuScan_v1_0;

namespace GpuScan_v1_0_Structs {

TAVO_FROM_REPLY(ScanGet, dto::gpuScan::ScanReply);
TAVO_FROM_AND_TO_REPLY(GpuScanIoSck, dto::Header::IoGetReply);
TAVO_FROM_AND_TO_REPLY(GpuScanSckFrequency, dto::Base::FrequencyGetReply);

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
