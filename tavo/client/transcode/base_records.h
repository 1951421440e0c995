#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the methods that every remote object has, and records that several types share.
namespace TAVO::dto::Base {

/// A version on the wire. A part of 0xFFFFFFFF stands for "any"; TAVO::Version compares such versions.
struct TAVO_API Version {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t bugfix = 0;
    bool operator==(const Version&) const = default;
    template <class Self = Version>
    static constexpr auto fields() {
        return std::tuple{Field{"major", &Self::major}, Field{"minor", &Self::minor},
                          Field{"bugfix", &Self::bugfix}};
    }
};

/// A child object, as its parent lists it.
struct TAVO_API Member {
    std::string name;     ///< its own name, without those of its parents
    std::uint32_t id = 0; ///< its instance id, the address of calls to it
    bool operator==(const Member&) const = default;
    template <class Self = Member>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}, Field{"id", &Self::id}};
    }
};

/// A remote method, as its object lists it.
struct TAVO_API Method {
    std::string name;
    std::uint32_t id = 0;  ///< holds for this object only
    std::string signature; ///< a text about the method, the device's to define; empty after "methods"
    bool operator==(const Method&) const = default;
    template <class Self = Method>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}, Field{"id", &Self::id},
                          Field{"signature", &Self::signature}};
    }
};

/// Reply to "type": the name of the object's remote type, such as "relay".
struct TAVO_API TypeReply : reply_packet {
    std::string type;
    bool operator==(const TypeReply&) const = default;
    template <class Self = TypeReply>
    static constexpr auto fields() {
        return std::tuple{Field{"type", &Self::type}};
    }
};

/// Reply to "version": the version of the object's type, which decides about its methods.
struct TAVO_API VersionReply : reply_packet {
    Version version;
    bool operator==(const VersionReply&) const = default;
    template <class Self = VersionReply>
    static constexpr auto fields() {
        return std::tuple{Field{"version", &Self::version}};
    }
};

/// Reply to "members": the object's children, in the device's order.
struct TAVO_API MembersReply : reply_packet {
    std::vector<Member> members;
    bool operator==(const MembersReply&) const = default;
    template <class Self = MembersReply>
    static constexpr auto fields() {
        return std::tuple{Field{"members", &Self::members}};
    }
};

/// Reply to "methods" and "methodsVerbose". Signatures travel only with "methodsVerbose"; after "methods"
/// they are empty.
struct TAVO_API MethodsReply : reply_packet {
    std::vector<Method> methods;
    bool operator==(const MethodsReply&) const = default;
    template <class Self = MethodsReply>
    static constexpr auto fields() {
        return std::tuple{Field{"methods", &Self::methods}};
    }
};

/// Reply to "available": whether the object is free, and two texts, the device's to define.
struct TAVO_API AvailableReply : reply_packet {
    std::uint8_t available = 0; ///< any value but 0: free
    std::string user;
    std::string info;
    bool operator==(const AvailableReply&) const = default;
    template <class Self = AvailableReply>
    static constexpr auto fields() {
        return std::tuple{Field{"available", &Self::available}, Field{"user", &Self::user},
                          Field{"info", &Self::info}};
    }
};

/// Parameters of "reserve": a flag and two texts, all the device's to define.
struct TAVO_API ReserveRequest : request_packet {
    std::uint8_t flag = 0;
    std::string first;
    std::string second;
    bool operator==(const ReserveRequest&) const = default;
    template <class Self = ReserveRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"flag", &Self::flag}, Field{"first", &Self::first},
                          Field{"second", &Self::second}};
    }
};

/// A reply of one integer, whose meaning the method defines. Several types share it.
struct TAVO_API IntegerReply : reply_packet {
    std::int32_t value = 0;
    bool operator==(const IntegerReply&) const = default;
    template <class Self = IntegerReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

/// A clock frequency, and a second integer. Unit and meaning are the device's to define.
struct TAVO_API FrequencyGetReply : reply_packet {
    std::uint64_t frequency = 0;
    std::int32_t value = 0;
    bool operator==(const FrequencyGetReply&) const = default;
    template <class Self = FrequencyGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"frequency", &Self::frequency}, Field{"value", &Self::value}};
    }
};

/// A debug header, the connector between appliance and board: its name, and three flags, the device's to
/// define.
struct TAVO_API Header {
    std::string name;
    std::uint8_t flag1 = 0;
    std::uint8_t flag2 = 0;
    std::uint8_t flag3 = 0;
    bool operator==(const Header&) const = default;
    template <class Self = Header>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}, Field{"flag1", &Self::flag1},
                          Field{"flag2", &Self::flag2}, Field{"flag3", &Self::flag3}};
    }
};

/// A connection between headers: two lists of names, the device's to define.
struct TAVO_API Connection {
    std::vector<std::string> first;
    std::vector<std::string> second;
    bool operator==(const Connection&) const = default;
    template <class Self = Connection>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// Reply to "headerStatusGet" of the debug modules: every header, and how they are connected.
struct TAVO_API HeaderStatusGetReply : reply_packet {
    std::vector<Header> headers;
    std::vector<Connection> connections;
    bool operator==(const HeaderStatusGetReply&) const = default;
    template <class Self = HeaderStatusGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"headers", &Self::headers}, Field{"connections", &Self::connections}};
    }
};

} // namespace TAVO::dto::Base
