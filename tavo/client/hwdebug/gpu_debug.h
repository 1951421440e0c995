#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/gpu_debug_tables.h>
#include <tavo/client/hwdebug/gpu_scan.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/i2c.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Proxy of a "gpuDebug" object, the debug connector of a graphics processor. Its operations build calls and
/// send nothing; each throws SpecificationError when the device does not list the method.
class TAVO_API GpuDebug_v1_0 : public Object_v1_0 {
public:
    ~GpuDebug_v1_0() override;

    /// The child "jtag". No call to the device.
    std::shared_ptr<Jtag_v1_1> getJtag() const { return jtag_; }
    /// The child "gpuScan". No call to the device.
    std::shared_ptr<GpuScan_v1_0> getGpuScan() const { return gpuScan_; }
    /// The child "i2c"; empty when the object has none. No call to the device.
    std::shared_ptr<I2c_v1_0> getI2c() const { return i2c_; }

    std::shared_ptr<BoundMethod<dto::gpuDebug::HeaderModeGetReply>> getHeaderModeGetMethod() const;
    std::shared_ptr<Method> getHeaderModeSetMethod(int mode) const;
    /// The power-enable input.
    std::shared_ptr<BoundMethod<dto::gpuDebug::IoPxEnGetReply>> getIoPxEnGetMethod() const;
    std::shared_ptr<BoundMethod<HeaderResult>> getHeaderStatusGetMethod() const;

protected:
    friend class TAVO::ObjectFactory;
    GpuDebug_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                  std::shared_ptr<Container> parent,
                  const TAVOXTranscode::gpuDebug_v1_0::EncoderList& encoders,
                  const TAVOXTranscode::gpuDebug_v1_0::DecoderList& decoders);
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of class Jtag_v1_1, and
    /// then "gpuscan object not found." without a child "gpuScan". A missing "i2c" is accepted.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_1> jtag_;
    std::shared_ptr<GpuScan_v1_0> gpuScan_;
    std::shared_ptr<I2c_v1_0> i2c_;
};

/// Serves type "gpuDebug" of every version.
class TAVO_API GpuDebugFactory : public ObjectFactory {
public:
    GpuDebugFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
