#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/jtag_tables.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Results of Jtag_v1_1, for the instruction register and the data register.
namespace Jtag_v1_1_Structs {

struct TAVO_API RepeatGet {
    RepeatGet() = default;
    RepeatGet(const dto::Jtag::OptionRepeatGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit RepeatGet(const dto::result& outcome);

    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const RepeatGet&) const = default;
};

struct TAVO_API RetryGet {
    RetryGet() = default;
    RetryGet(const dto::Jtag::OptionRetryGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit RetryGet(const dto::result& outcome);

    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const RetryGet&) const = default;
};

struct TAVO_API TdoExpectedGet {
    TdoExpectedGet() = default;
    TdoExpectedGet(const dto::Jtag::OptionTdoExpectedGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit TdoExpectedGet(const dto::result& outcome);

    std::int32_t irBits = 0;
    std::vector<std::uint8_t> irExpected;
    std::vector<std::uint8_t> irMask;
    std::int32_t drBits = 0;
    std::vector<std::uint8_t> drExpected;
    std::vector<std::uint8_t> drMask;
    bool operator==(const TdoExpectedGet&) const = default;
};

} // namespace Jtag_v1_1_Structs

/// Proxy of a "jtag" object of version 1.0. It has the operations of every object alone: its methods are
/// called by name.
class TAVO_API Jtag_v1_0 : public Object_v1_0 {
public:
    ~Jtag_v1_0() override;

protected:
    friend class TAVO::ObjectFactory;
    Jtag_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
              std::shared_ptr<Container> parent, const TAVOXTranscode::jtag_v1_0::EncoderList& encoders,
              const TAVOXTranscode::jtag_v1_0::DecoderList& decoders);
};

/// Proxy of a "jtag" object, one JTAG test access port. Its operations build calls and
/// send nothing; each throws SpecificationError when the device does not list the method.
///
/// Nothing is checked on this side: the device judges counts, states and lengths and reports through the
/// return code. The numbering of states, the units, and the meaning of flags are the device's to define.
class TAVO_API Jtag_v1_1 : public Object_v1_0 {
public:
    ~Jtag_v1_1() override;

    /// Shifts through the instruction register. The value holds the captured bits.
    std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
    getShiftIRMethod(int bits, const std::vector<std::uint8_t>& data) const;
    /// The same through the data register.
    std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
    getShiftDRMethod(int bits, const std::vector<std::uint8_t>& data) const;
    std::shared_ptr<BoundMethod<dto::Jtag::TapStateGetReply>> tapStateGetMethod() const;
    std::shared_ptr<Method> getTapStateSetMethod(int state) const;
    std::shared_ptr<Method> getSleepMethod(int duration, bool flag) const;
    std::shared_ptr<BoundMethod<dto::Base::FrequencyGetReply>> getOptionTckFrequencyGetMethod() const;
    std::shared_ptr<Method> getOptionTckFrequencySetMethod(int frequency) const;
    std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::TdoExpectedGet>> getOptionTdoExpectedGetMethod() const;
    std::shared_ptr<Method> getOptionTdoExpectedSetMethod(int irBits,
                                                          const std::vector<std::uint8_t>& irExpected,
                                                          const std::vector<std::uint8_t>& irMask, int drBits,
                                                          const std::vector<std::uint8_t>& drExpected,
                                                          const std::vector<std::uint8_t>& drMask) const;
    std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RetryGet>> getOptionRetryGetMethod() const;
    std::shared_ptr<Method> getOptionRetrySetMethod(int irCount, bool irEnable, int drCount,
                                                    bool drEnable) const;
    std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RepeatGet>> getOptionRepeatGetMethod() const;
    std::shared_ptr<Method> getOptionRepeatSetMethod(int irCount, bool irEnable, int drCount,
                                                     bool drEnable) const;
    std::shared_ptr<BoundMethod<dto::Jtag::OptionTerminationStateGetReply>>
    getOptionTerminationStateGetMethod() const;
    std::shared_ptr<Method> getOptionTerminationStateSetMethod(int ir, int dr) const;
    std::shared_ptr<BoundMethod<dto::Jtag::OptionPrePostTckGetReply>> getOptionPrePostTckGetMethod() const;
    std::shared_ptr<Method> getOptionPrePostTckSetMethod(int value1, int value2, int value3,
                                                         int value4) const;
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTrstGetMethod() const;
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTckGetMethod() const;
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTmsGetMethod() const;
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTdiGetMethod() const;
    std::shared_ptr<BoundMethod<dto::Header::oGetReply>> getIoTdoGetMethod() const;
    std::shared_ptr<Method> getIoTrstSetMethod(bool first, bool second) const;
    std::shared_ptr<Method> getIoTckSetMethod(bool first, bool second) const;
    std::shared_ptr<Method> getIoTmsSetMethod(bool first, bool second) const;
    std::shared_ptr<Method> getIoTdiSetMethod(bool first, bool second) const;
    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;
    std::shared_ptr<BoundMethod<HeaderResult>> getheaderStatusGetMethod() const;

protected:
    friend class TAVO::ObjectFactory;
    Jtag_v1_1(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
              std::shared_ptr<Container> parent, const TAVOXTranscode::jtag_v1_1::EncoderList& encoders,
              const TAVOXTranscode::jtag_v1_1::DecoderList& decoders);
};

/// Serves type "jtag": version 1.0 by Jtag_v1_0, every other version by Jtag_v1_1.
class TAVO_API JtagFactory : public ObjectFactory {
public:
    JtagFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
