#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/hdt.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_status_tables.h>

/// Tables of the "cpuDebug" object, version 1.0, which has only the eight methods of every object.
namespace TAVO::TAVOXTranscode::cpuDebug_v1_0 {

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_0

/// The methods of the "cpuDebug" object, version 1.1: headerStatusGet alone; and its tables. Laid out like
/// base_v1_0.
namespace TAVO::TAVOXTranscode::cpuDebug_v1_1 {

using headerStatus_v1_1::headerStatusGet;

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction& encode_headerStatusGet;
TAVO_API extern DecoderFunction& decode_headerStatusGet;

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_1

namespace TAVO::HWDebug {

/// Proxy of a "cpuDebug" object of version 1.0, the debug interfaces of one processor socket. Use it to reach
/// the socket's "jtag" and "hdt" objects, both of version 1.0; it has no other operations.
class TAVO_API CpuDebug_v1_0 : public Proxy<TAVOXTranscode::cpuDebug_v1_0::rows> {
public:
    /// The child "jtag". Does not call the device.
    std::shared_ptr<Jtag_v1_0> getJtag() const { return jtag_; }
    /// The child "hdt". Does not call the device.
    std::shared_ptr<Hdt_v1_0> getHdt() const { return hdt_; }

protected:
    using Proxy::Proxy;
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of class Jtag_v1_0, and
    ///         then "hdt object not found." without a child "hdt" of class Hdt_v1_0.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_0> jtag_;
    std::shared_ptr<Hdt_v1_0> hdt_;
};

/// Proxy of a "cpuDebug" object of any version but 1.0, the debug interfaces of one processor socket. Use it
/// to reach the socket's "jtag" and "hdt" objects without looking for them by name.
///
/// @code
/// const auto cpu = device->get<CpuDebug_v1_1>("cpu0");
/// const bool powerGood = device->value(cpu->getHdt()->getIoPwrokGetMethod()).level;
/// const auto state = device->value(cpu->getJtag()->tapStateGetMethod()).state;
/// @endcode
class TAVO_API CpuDebug_v1_1 : public Proxy<TAVOXTranscode::cpuDebug_v1_1::rows> {
public:
    /// The child "jtag". Does not call the device.
    std::shared_ptr<Jtag_v1_1> getJtag() const { return jtag_; }
    /// The child "hdt". Does not call the device.
    std::shared_ptr<Hdt_v1_1> getHdt() const { return hdt_; }
    /// Asks for the status of the socket's debug headers. Only builds a call. The spelling is the published
    /// one; there is no "headerStatusClear".
    /// @throws SpecificationError when the device does not list the method.
    std::shared_ptr<BoundMethod<HeaderResult>> getheaderStatusGetMethod() const;

protected:
    using Proxy::Proxy;
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of class Jtag_v1_1, and
    ///         then "hdt object not found." without a child "hdt" of class Hdt_v1_1.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_1> jtag_;
    std::shared_ptr<Hdt_v1_1> hdt_;
};

/// Serves type "cpuDebug": version 1.0 by CpuDebug_v1_0, every other version by CpuDebug_v1_1.
class TAVO_API HwDebugFactory : public TypeFactory {
public:
    HwDebugFactory();
};

} // namespace TAVO::HWDebug
