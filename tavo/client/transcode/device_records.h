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
    template <class Self = FirmwareInfo>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}, Field{"version", &Self::version}};
    }
};

/// Four texts about a board, the device's to define.
struct TAVO_API BoardInfo {
    std::string field1;
    std::string field2;
    std::string field3;
    std::string field4;
    bool operator==(const BoardInfo&) const = default;
    template <class Self = BoardInfo>
    static constexpr auto fields() {
        return std::tuple{Field{"field1", &Self::field1}, Field{"field2", &Self::field2},
                          Field{"field3", &Self::field3}, Field{"field4", &Self::field4}};
    }
};

/// "info"
struct TAVO_API InfoReply : reply_packet {
    std::string name;
    Base::Version version;
    std::vector<FirmwareInfo> firmware;
    std::vector<BoardInfo> boards;
    bool operator==(const InfoReply&) const = default;
    template <class Self = InfoReply>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}, Field{"version", &Self::version},
                          Field{"firmware", &Self::firmware}, Field{"boards", &Self::boards}};
    }
};

/// "rootMembers"
struct TAVO_API RootMembersReply : reply_packet {
    std::vector<Base::Member> members;
    bool operator==(const RootMembersReply&) const = default;
    template <class Self = RootMembersReply>
    static constexpr auto fields() {
        return std::tuple{Field{"members", &Self::members}};
    }
};

/// "lock"
struct TAVO_API LockRequest : request_packet {
    std::string user;
    std::string password;
    bool operator==(const LockRequest&) const = default;
    template <class Self = LockRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"user", &Self::user}, Field{"password", &Self::password}};
    }
};

/// "lock": the lock id, sent at the head of every later request; 0 means not locked.
struct TAVO_API LockReply : reply_packet {
    std::uint32_t lockId = 0;
    bool operator==(const LockReply&) const = default;
    template <class Self = LockReply>
    static constexpr auto fields() {
        return std::tuple{Field{"lockId", &Self::lockId}};
    }
};

/// "unlock"
struct TAVO_API UnLockRequest : request_packet {
    std::string user;
    std::string password;
    bool operator==(const UnLockRequest&) const = default;
    template <class Self = UnLockRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"user", &Self::user}, Field{"password", &Self::password}};
    }
};

/// "getKey"
struct TAVO_API KeyReply : reply_packet {
    std::vector<std::uint8_t> key;
    bool operator==(const KeyReply&) const = default;
    template <class Self = KeyReply>
    static constexpr auto fields() {
        return std::tuple{Field{"key", &Self::key}};
    }
};

/// "login"
struct TAVO_API LoginRequest : request_packet {
    std::string user;
    bool operator==(const LoginRequest&) const = default;
    template <class Self = LoginRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"user", &Self::user}};
    }
};

/// "login"
struct TAVO_API LoginReply : reply_packet {
    std::vector<std::uint8_t> challenge;
    bool operator==(const LoginReply&) const = default;
    template <class Self = LoginReply>
    static constexpr auto fields() {
        return std::tuple{Field{"challenge", &Self::challenge}};
    }
};

/// "CHAPRespond". Only the response travels; `number` stays on this side.
struct TAVO_API CHAPResponseRequest : request_packet {
    std::vector<std::uint8_t> response;
    std::int32_t number = 0;
    bool operator==(const CHAPResponseRequest&) const = default;
    template <class Self = CHAPResponseRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"response", &Self::response}};
    }
};

/// "CHAPRespond": a text, the device's to define.
struct TAVO_API CHAPResponseReply : reply_packet {
    std::string text;
    bool operator==(const CHAPResponseReply&) const = default;
    template <class Self = CHAPResponseReply>
    static constexpr auto fields() {
        return std::tuple{Field{"text", &Self::text}};
    }
};

} // namespace TAVO::dto::Device
