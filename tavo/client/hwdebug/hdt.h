#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/hdt_tables.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// What the proxies of all versions of an "hdt" object have: the debug signals of a target processor. Its
/// operations build calls and send nothing; each throws SpecificationError when the device does not list the
/// method. Units and codes are the device's to define.
class TAVO_API Hdt : public Object_v1_0 {
public:
    ~Hdt() override;

    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoDbreqGetMethod() const;
    std::shared_ptr<Method> getIoDbreqSetMethod(bool level) const;
    /// One element for each DBRDY line.
    std::shared_ptr<BoundMethod<std::vector<bool>>> getIoDbrdyGetMethod() const;
    /// One element for each DBRDY line.
    std::shared_ptr<BoundMethod<std::vector<bool>>> getIoDbrdySnapShotGetMethod() const;
    std::shared_ptr<Method> getIoDbrdySnapshotClearMethod() const;
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoResetGetMethod() const;
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoPwrokGetMethod() const;
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnDbrdyGetReply>> getOptionDbreqOnDbrdyGetMethod() const;
    std::shared_ptr<Method> getOptionDbreqOnDbrdySetMethod(bool enable) const;
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnResetReply>> getOptionDbreqOnResetGetMethod() const;
    std::shared_ptr<Method> getOptionDbreqOnResetSetMethod(bool enable) const;
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqPulseWidthReply>>
    getOptionDbreqPulseWidthGetMethod() const;
    std::shared_ptr<Method> getOptionDbreqPulseWidthSetMethod(int pulseWidth) const;

protected:
    Hdt(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
        std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders);
};

/// Proxy of an "hdt" object up to version 1.0.
class TAVO_API Hdt_v1_0 : public Hdt {
public:
    ~Hdt_v1_0() override;

protected:
    friend class TAVO::ObjectFactory;
    Hdt_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
             std::shared_ptr<Container> parent, const TAVOXTranscode::hdt_v1_0::EncoderList& encoders,
             const TAVOXTranscode::hdt_v1_0::DecoderList& decoders);
};

/// Proxy of an "hdt" object above version 1.0.
class TAVO_API Hdt_v1_1 : public Hdt {
public:
    ~Hdt_v1_1() override;

    std::shared_ptr<BoundMethod<dto::hdt::FrequencyGetReply>> getOptionFrequencyGetMethod() const;
    /// The reply itself, unlike the other debug modules' HeaderResult.
    std::shared_ptr<BoundMethod<dto::Base::HeaderStatusGetReply>> getHeaderStatusGetMethod() const;
    std::shared_ptr<Method> getHeaderStatusClearMethod() const;
    std::shared_ptr<BoundMethod<dto::hdt::ioDbreqSourceSnapshotReply>>
    getIoDbreqSourceSnapshotGetMethod() const;
    std::shared_ptr<Method> getIoDbreqSourceSnapshotClearMethod() const;
    std::shared_ptr<BoundMethod<dto::hdt::ioTriggerGetReply>> getIoTriggerGetMethod(int index) const;
    std::shared_ptr<Method> getIoTriggerSetMethod(int index, bool level) const;
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnTriggerGetReply>>
    getOptionDbreqOnTriggerGetMethod() const;
    std::shared_ptr<Method> getOptionDbreqOnTriggerSetMethod(bool flag1, int value1, bool flag2,
                                                             int value2) const;
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbrdyMaskGetReply>> getOptionDbrdyMaskGetMethod() const;
    /// One element for each DBRDY line. (The name without "Method" is the published one.)
    std::shared_ptr<Method> getOptionDbrdyMaskSet(const std::vector<bool>& mask) const;
    std::shared_ptr<BoundMethod<dto::hdt::OptionTriggerSetupGetReply>>
    getOptionTriggerSetupGetMethod(int index) const;
    std::shared_ptr<Method> getOptionTriggerSetupSetMethod(int index, int value1, int value2, int value3,
                                                           int value4, int value5, int value6,
                                                           int value7) const;
    /// @throws std::runtime_error "getIoDbrdyWait not supported on kelvor " (with the trailing blank) always.
    /// The remote method can be called by name.
    std::shared_ptr<Method> getIoDbrdyWaitMethod(const std::vector<dto::Header::IoGetReply>& lines,
                                                 int timeout) const;

protected:
    friend class TAVO::ObjectFactory;
    Hdt_v1_1(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
             std::shared_ptr<Container> parent, const TAVOXTranscode::hdt_v1_1::EncoderList& encoders,
             const TAVOXTranscode::hdt_v1_1::DecoderList& decoders);
};

/// Serves type "hdt": up to version 1.0 by Hdt_v1_0, every higher version by Hdt_v1_1.
class TAVO_API HdtFactory : public ObjectFactory {
public:
    HdtFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug

namespace TAVO {

/// The lines of a DBRDY reply or snapshot, in the order of its bytes; any byte but 0 is true.
template <>
struct TAVO_API PlainResult<std::vector<bool>> {
    static std::vector<bool> of(const dto::result& outcome);
};

} // namespace TAVO
