#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/base_records.h>

/// Records of the "device" object (instance id 0), which stands for the appliance as a whole.
namespace TAVO::dto::Device {

/// One firmware of the appliance.
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

/// Reply to "info": what the appliance is and what it consists of.
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

/// Reply to "rootMembers": the objects at the top of the tree, without "device", "system" and "private".
struct TAVO_API RootMembersReply : reply_packet {
    std::vector<Base::Member> members;
    bool operator==(const RootMembersReply&) const = default;
    template <class Self = RootMembersReply>
    static constexpr auto fields() {
        return std::tuple{Field{"members", &Self::members}};
    }
};

/// Parameters of "lock". The password travels as it is, unencrypted.
struct TAVO_API LockRequest : request_packet {
    std::string user;
    std::string password;
    bool operator==(const LockRequest&) const = default;
    template <class Self = LockRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"user", &Self::user}, Field{"password", &Self::password}};
    }
};

/// Reply to "lock".
struct TAVO_API LockReply : reply_packet {
    std::uint32_t lockId = 0; ///< goes at the head of every later request; 0 when nothing was locked
    bool operator==(const LockReply&) const = default;
    template <class Self = LockReply>
    static constexpr auto fields() {
        return std::tuple{Field{"lockId", &Self::lockId}};
    }
};

/// Parameters of "unlock": the credentials that took the lock.
struct TAVO_API UnLockRequest : request_packet {
    std::string user;
    std::string password;
    bool operator==(const UnLockRequest&) const = default;
    template <class Self = UnLockRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"user", &Self::user}, Field{"password", &Self::password}};
    }
};

/// Reply to "getKey": the server key, one of serverKeys() where the appliance is genuine.
struct TAVO_API KeyReply : reply_packet {
    std::vector<std::uint8_t> key;
    bool operator==(const KeyReply&) const = default;
    template <class Self = KeyReply>
    static constexpr auto fields() {
        return std::tuple{Field{"key", &Self::key}};
    }
};

/// Parameters of "login". No password travels.
struct TAVO_API LoginRequest : request_packet {
    std::string user;
    bool operator==(const LoginRequest&) const = default;
    template <class Self = LoginRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"user", &Self::user}};
    }
};

/// Reply to "login": a challenge, which "CHAPRespond" answers.
struct TAVO_API LoginReply : reply_packet {
    std::vector<std::uint8_t> challenge;
    bool operator==(const LoginReply&) const = default;
    template <class Self = LoginReply>
    static constexpr auto fields() {
        return std::tuple{Field{"challenge", &Self::challenge}};
    }
};

/// Parameters of "CHAPRespond": the response to the challenge, computed by the application.
struct TAVO_API CHAPResponseRequest : request_packet {
    std::vector<std::uint8_t> response;
    std::int32_t number = 0; ///< does not travel
    bool operator==(const CHAPResponseRequest&) const = default;
    template <class Self = CHAPResponseRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"response", &Self::response}};
    }
};

/// Reply to "CHAPRespond": a text, the device's to define.
struct TAVO_API CHAPResponseReply : reply_packet {
    std::string text;
    bool operator==(const CHAPResponseReply&) const = default;
    template <class Self = CHAPResponseReply>
    static constexpr auto fields() {
        return std::tuple{Field{"text", &Self::text}};
    }
};

} // namespace TAVO::dto::Device
