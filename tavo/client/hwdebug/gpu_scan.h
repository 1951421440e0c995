#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/gpu_scan_tables.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Results of GpuScan_v1_0.
namespace GpuScan_v1_0_Structs {

/// The scanned bytes.
struct TAVO_API ScanGet {
    ScanGet() = default;
    ScanGet(const dto::gpuScan::ScanReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit ScanGet(const dto::result& outcome);

    std::vector<std::uint8_t> data;
    bool operator==(const ScanGet&) const = default;
};

struct TAVO_API GpuScanIoSck {
    GpuScanIoSck() = default;
    GpuScanIoSck(const dto::Header::IoGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit GpuScanIoSck(const dto::result& outcome);
    operator dto::Header::IoGetReply() const;

    bool first = false;
    bool second = false;
    bool operator==(const GpuScanIoSck&) const = default;
};

struct TAVO_API GpuScanSckFrequency {
    GpuScanSckFrequency() = default;
    GpuScanSckFrequency(const dto::Base::FrequencyGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit GpuScanSckFrequency(const dto::result& outcome);
    operator dto::Base::FrequencyGetReply() const;

    std::uint64_t frequency = 0;
    std::int32_t value = 0;
    bool operator==(const GpuScanSckFrequency&) const = default;
};

} // namespace GpuScan_v1_0_Structs

/// Proxy of a "gpuScan" object, a serial scan port. Its operations build calls and
/// send nothing; each throws SpecificationError when the device does not list the method.
class TAVO_API GpuScan_v1_0 : public Object_v1_0 {
public:
    ~GpuScan_v1_0() override;

    std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::ScanGet>> getScanMethod(int count) const;
    std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanSckFrequency>>
    getOptionSckFrequencyGetMethod() const;
    std::shared_ptr<Method> getOptionSckFrequencySetMethod(int frequency) const;
    std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanIoSck>> getIoSckGetMethod() const;
    std::shared_ptr<Method> getIoSckSetMethod(bool first, bool second) const;
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoSdoGetMethod() const;
    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;
    std::shared_ptr<BoundMethod<HeaderResult>> getHeaderStatusGetMethod() const;
    std::shared_ptr<Method> getHeaderStatusClearMethod() const;

protected:
    friend class TAVO::ObjectFactory;
    GpuScan_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                 std::shared_ptr<Container> parent, const TAVOXTranscode::gpuScan_v1_0::EncoderList& encoders,
                 const TAVOXTranscode::gpuScan_v1_0::DecoderList& decoders);
};

/// Serves type "gpuScan" of every version.
class TAVO_API GpuScanFactory : public ObjectFactory {
public:
    GpuScanFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
