#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/base_records.h>

/// Records of the "device" object.
namespace TAVO::dto::Device {

struct TAVO_API FirmwareInfo {
    std::string name;
    Base::Version version;
    bool operator==(const FirmwareInfo&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"name", &FirmwareInfo::name}, Field{"version", &FirmwareInfo::version}};
    }
};

/// Four texts about a board, the device's to define.
struct TAVO_API BoardInfo {
    std::string field1;
    std::string field2;
    std::string field3;
    std::string field4;
    bool operator==(const BoardInfo&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"field1", &BoardInfo::field1}, Field{"field2", &BoardInfo::field2},
                          Field{"field3", &BoardInfo::field3}, Field{"field4", &BoardInfo::field4}};
    }
};

/// "info"
struct TAVO_API InfoReply : reply_packet {
    std::string name;
    Base::Version version;
    std::vector<FirmwareInfo> firmware;
    std::vector<BoardInfo> boards;
    bool operator==(const InfoReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"name", &InfoReply::name}, Field{"version", &InfoReply::version},
                          Field{"firmware", &InfoReply::firmware}, Field{"boards", &InfoReply::boards}};
    }
};

/// "rootMembers"
struct TAVO_API RootMembersReply : reply_packet {
    std::vector<Base::Member> members;
    bool operator==(const RootMembersReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"members", &RootMembersReply::members}}; }
};

/// "lock"
struct TAVO_API LockRequest : request_packet {
    std::string user;
    std::string password;
    bool operator==(const LockRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"user", &LockRequest::user}, Field{"password", &LockRequest::password}};
    }
};

/// "lock": the lock id, sent at the head of every later request; 0 means not locked.
struct TAVO_API LockReply : reply_packet {
    std::uint32_t lockId = 0;
    bool operator==(const LockReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"lockId", &LockReply::lockId}}; }
};

/// "unlock"
struct TAVO_API UnLockRequest : request_packet {
    std::string user;
    std::string password;
    bool operator==(const UnLockRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"user", &UnLockRequest::user}, Field{"password", &UnLockRequest::password}};
    }
};

/// "getKey"
struct TAVO_API KeyReply : reply_packet {
    std::vector<std::uint8_t> key;
    bool operator==(const KeyReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"key", &KeyReply::key}}; }
};

/// "login"
struct TAVO_API LoginRequest : request_packet {
    std::string user;
    bool operator==(const LoginRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"user", &LoginRequest::user}}; }
};

/// "login"
struct TAVO_API LoginReply : reply_packet {
    std::vector<std::uint8_t> challenge;
    bool operator==(const LoginReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"challenge", &LoginReply::challenge}}; }
};

/// "CHAPRespond". Only the response travels; `number` stays on this side.
struct TAVO_API CHAPResponseRequest : request_packet {
    std::vector<std::uint8_t> response;
    std::int32_t number = 0;
    bool operator==(const CHAPResponseRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"response", &CHAPResponseRequest::response}}; }
};

/// "CHAPRespond": a text, the device's to define.
struct TAVO_API CHAPResponseReply : reply_packet {
    std::string text;
    bool operator==(const CHAPResponseReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"text", &CHAPResponseReply::text}}; }
};

} // namespace TAVO::dto::Device
