#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/field.h>

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
    template <class Self = BoardInfo>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"field1", &Self::field1}, dto::Field{"field2", &Self::field2},
                          dto::Field{"field3", &Self::field3}, dto::Field{"field4", &Self::field4}};
    }
};

/// One piece of firmware in the device.
struct TAVO_API FirmwareInfo {
    FirmwareInfo() = default;
    FirmwareInfo(const dto::Device::FirmwareInfo& reply);

    std::string name;
    Version version;
    template <class Self = FirmwareInfo>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"name", &Self::name}, dto::Field{"version", &Self::version}};
    }
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
    template <class Self = DeviceInfo>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"name", &Self::name}, dto::Field{"version", &Self::version},
                          dto::Field{"firmware", &Self::firmware}, dto::Field{"boards", &Self::boards}};
    }
};

/// Proxy of the "device" object: identity, root members, lock, key and login. Its operations build calls and
/// send nothing; each throws SpecificationError when the device does not list the method.
class TAVO_API Device_v1_0 : public Proxy<TAVOXTranscode::device_v1_0::rows> {
public:
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
    using Proxy::Proxy;
};

/// Serves type "device" up to version 1.0.
/// A higher version is refused: SpecificationError "Unknown Device object version: " and the version.
class TAVO_API DeviceObjectFactory : public TypeFactory {
public:
    DeviceObjectFactory();
};

template <>
struct TAVO_API PlainResult<std::vector<unsigned char>> {
    static std::vector<unsigned char> of(const dto::result& outcome);
};

} // namespace TAVO
