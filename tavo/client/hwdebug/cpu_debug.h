#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/cpu_debug_tables.h>
#include <tavo/client/hwdebug/hdt.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Proxy of a "cpuDebug" object of version 1.0: the debug interfaces of one processor socket.
class TAVO_API CpuDebug_v1_0 : public Object_v1_0 {
public:
    ~CpuDebug_v1_0() override;

    /// The child "jtag". No call to the device.
    std::shared_ptr<Jtag_v1_0> getJtag() const { return jtag_; }
    /// The child "hdt". No call to the device.
    std::shared_ptr<Hdt_v1_0> getHdt() const { return hdt_; }

protected:
    friend class TAVO::ObjectFactory;
    CpuDebug_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                  std::shared_ptr<Container> parent,
                  const TAVOXTranscode::cpuDebug_v1_0::EncoderList& encoders,
                  const TAVOXTranscode::cpuDebug_v1_0::DecoderList& decoders);
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of class Jtag_v1_0, and
    /// then "hdt object not found." without a child "hdt" of class Hdt_v1_0.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_0> jtag_;
    std::shared_ptr<Hdt_v1_0> hdt_;
};

/// Proxy of a "cpuDebug" object: the debug interfaces of one processor socket.
class TAVO_API CpuDebug_v1_1 : public Object_v1_0 {
public:
    ~CpuDebug_v1_1() override;

    /// The child "jtag". No call to the device.
    std::shared_ptr<Jtag_v1_1> getJtag() const { return jtag_; }
    /// The child "hdt". No call to the device.
    std::shared_ptr<Hdt_v1_1> getHdt() const { return hdt_; }
    std::shared_ptr<BoundMethod<HeaderResult>> getheaderStatusGetMethod() const;

protected:
    friend class TAVO::ObjectFactory;
    CpuDebug_v1_1(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                  std::shared_ptr<Container> parent,
                  const TAVOXTranscode::cpuDebug_v1_1::EncoderList& encoders,
                  const TAVOXTranscode::cpuDebug_v1_1::DecoderList& decoders);
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of class Jtag_v1_1, and
    /// then "hdt object not found." without a child "hdt" of class Hdt_v1_1.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_1> jtag_;
    std::shared_ptr<Hdt_v1_1> hdt_;
};

/// Serves type "cpuDebug": version 1.0 by CpuDebug_v1_0, every other version by CpuDebug_v1_1.
class TAVO_API HwDebugFactory : public ObjectFactory {
public:
    HwDebugFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
