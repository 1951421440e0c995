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
    /// Copies the record of the reply.
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

/// One firmware in the device.
struct TAVO_API FirmwareInfo {
    FirmwareInfo() = default;
    /// Copies the record of the reply.
    FirmwareInfo(const dto::Device::FirmwareInfo& reply);

    std::string name; ///< the device's to define
    Version version;  ///< the version of this firmware
    template <class Self = FirmwareInfo>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"name", &Self::name}, dto::Field{"version", &Self::version}};
    }
};

/// The device's identity, made from the reply of Device_v1_0::getInfoMethod().
///
/// @code
/// const TAVO::DeviceInfo info = device->value(device->getDevice()->getInfoMethod());
/// @endcode
struct TAVO_API DeviceInfo {
    DeviceInfo() = default;
    /// Copies the reply.
    DeviceInfo(const dto::Device::InfoReply& reply);

    std::string name;                   ///< the device's to define
    Version version;                    ///< the version of the device
    std::vector<FirmwareInfo> firmware; ///< in the device's order
    std::vector<BoardInfo> boards;      ///< in the device's order
    template <class Self = DeviceInfo>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"name", &Self::name}, dto::Field{"version", &Self::version},
                          dto::Field{"firmware", &Self::firmware}, dto::Field{"boards", &Self::boards}};
    }
};

/// Proxy of the "device" object: identity, root members, lock, key and login. Device::getDevice() returns it.
/// Use it to identify a device; leave opening, locking and unlocking to DeviceFactory, Device::relock() and
/// Device::unlock().
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method.
class TAVO_API Device_v1_0 : public Proxy<TAVOXTranscode::device_v1_0::rows> {
public:
    /// Asks for the name, the version, the firmware and the boards of the device. The value converts to a
    /// DeviceInfo.
    std::shared_ptr<BoundMethod<dto::Device::InfoReply>> getInfoMethod() const;
    /// Asks for the objects at the top of the tree and their instance ids, without the three fixed objects.
    std::shared_ptr<BoundMethod<dto::Device::RootMembersReply>> getRootMembersMethod() const;
    /// Takes the lock for the user. The value holds the lock id; 0 when nothing was locked. The Device does
    /// not learn the id and sends its former one: use Device::relock() to hold the lock.
    std::shared_ptr<BoundMethod<dto::Device::LockReply>> getLockMethod(const std::string& user,
                                                                       const std::string& password) const;
    /// Gives the lock back. The Device goes on sending its lock id: use Device::unlock() instead.
    std::shared_ptr<Method> getUnlockMethod(const std::string& user, const std::string& password) const;
    /// Asks for the server key, by which a genuine device is recognised. Device::getKey() keeps it for
    /// Device::checkTavoKey(), this call does not.
    std::shared_ptr<BoundMethod<dto::Device::KeyReply>> getGetKeyMethod() const;
    /// Logs a user in by name. The value holds the challenge to answer with getCHAPResponseMethod().
    std::shared_ptr<BoundMethod<dto::Device::LoginReply>> getLoginMethod(const std::string& user) const;
    /// Answers the challenge of a login: remote method "CHAPRespond". The value is the bytes of the text that
    /// the device answers.
    /// @param response the bytes to send, computed by the application.
    /// @param number is not sent.
    std::shared_ptr<BoundMethod<std::vector<unsigned char>>>
    getCHAPResponseMethod(std::vector<unsigned char> response, int number) const;
    /// Not implemented: the type's tables hold no "getMaxPacketSize".
    /// @throws SpecificationError always.
    std::shared_ptr<BoundMethod<dto::Base::IntegerReply>> getMaxPacketSizeMethod() const;

protected:
    using Proxy::Proxy;
};

/// Serves type "device" up to version 1.0. Refuses higher versions with SpecificationError "Unknown Device
/// object version: " and the version.
class TAVO_API DeviceObjectFactory : public TypeFactory {
public:
    DeviceObjectFactory();
};

/// The bytes of the text in a dto::Device::CHAPResponseReply.
template <>
struct TAVO_API PlainResult<std::vector<unsigned char>> {
    static std::vector<unsigned char> of(const dto::result& outcome);
};

} // namespace TAVO
