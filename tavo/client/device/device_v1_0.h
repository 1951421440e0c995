#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/object_factory.h>
#include <tavo/client/transcode/device_tables.h>

namespace TAVO {

/// Four texts about a board, in the device's order; their meaning is the device's to define.
struct TAVO_API BoardInfo {
    BoardInfo() = default;
    BoardInfo(const dto::Device::BoardInfo& reply);

    std::string field1;
    std::string field2;
    std::string field3;
    std::string field4;
    bool operator==(const BoardInfo&) const = default;
};

/// One piece of firmware in the device.
struct TAVO_API FirmwareInfo {
    FirmwareInfo() = default;
    FirmwareInfo(const dto::Device::FirmwareInfo& reply);

    std::string name;
    Version version;
};

/// The device's identity; converts from the reply of Device_v1_0::getInfoMethod(). The meaning of the name is
/// the device's to define.
struct TAVO_API DeviceInfo {
    DeviceInfo() = default;
    DeviceInfo(const dto::Device::InfoReply& reply);

    std::string name;
    Version version;
    std::vector<FirmwareInfo> firmware;
    std::vector<BoardInfo> boards;
};

/// Proxy of the "device" object: identity, root members, lock, key and login. Its operations build calls and
/// send nothing; each throws SpecificationError when the device does not list the method.
class TAVO_API Device_v1_0 : public Object_v1_0 {
public:
    ~Device_v1_0() override;

    std::shared_ptr<BoundMethod<dto::Device::InfoReply>> getInfoMethod() const;
    std::shared_ptr<BoundMethod<dto::Device::RootMembersReply>> getRootMembersMethod() const;
    std::shared_ptr<BoundMethod<dto::Device::LockReply>> getLockMethod(const std::string& user,
                                                                       const std::string& password) const;
    std::shared_ptr<Method> getUnlockMethod(const std::string& user, const std::string& password) const;
    std::shared_ptr<BoundMethod<dto::Device::KeyReply>> getGetKeyMethod() const;
    std::shared_ptr<BoundMethod<dto::Device::LoginReply>> getLoginMethod(const std::string& user) const;
    /// Remote method "CHAPRespond". Only the bytes travel; `number` stays on this side. The value is the
    /// bytes of the text that the device answers.
    std::shared_ptr<BoundMethod<std::vector<unsigned char>>>
    getCHAPResponseMethod(std::vector<unsigned char> response, int number) const;
    /// @throws SpecificationError always: the type's tables hold no "getMaxPacketSize".
    std::shared_ptr<BoundMethod<dto::Base::IntegerReply>> getMaxPacketSizeMethod() const;

protected:
    friend class ObjectFactory;
    Device_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                std::shared_ptr<Container> parent, const TAVOXTranscode::device_v1_0::EncoderList& encoders,
                const TAVOXTranscode::device_v1_0::DecoderList& decoders);
};

/// Serves type "device" up to version 1.0.
/// A higher version is refused: SpecificationError "Unknown Device object version: " and the version.
class TAVO_API DeviceObjectFactory : public ObjectFactory {
public:
    DeviceObjectFactory();

private:
    friend class CoreObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

template <>
struct TAVO_API PlainResult<std::vector<unsigned char>> {
    static std::vector<unsigned char> of(const dto::result& outcome);
};

} // namespace TAVO
