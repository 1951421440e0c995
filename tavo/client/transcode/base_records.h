#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the methods that every remote object has, and records that several types share.
namespace TAVO::dto::Base {

/// A version on the wire; a part of 0xFFFFFFFF stands for "any" (see TAVO::Version).
struct TAVO_API Version {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t bugfix = 0;
    bool operator==(const Version&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"major", &Version::major}, Field{"minor", &Version::minor},
                          Field{"bugfix", &Version::bugfix}};
    }
};

/// A child object: the name under which its parent lists it, and its instance id.
struct TAVO_API Member {
    std::string name;
    std::uint32_t id = 0;
    bool operator==(const Member&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Member::name}, Field{"id", &Member::id}};
    }
};

/// A remote method: its name, its id on this object, and the text that the device reports beside it.
struct TAVO_API Method {
    std::string name;
    std::uint32_t id = 0;
    std::string signature;
    bool operator==(const Method&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Method::name}, Field{"id", &Method::id},
                          Field{"signature", &Method::signature}};
    }
};

/// "type"
struct TAVO_API TypeReply : reply_packet {
    std::string type;
    bool operator==(const TypeReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"type", &TypeReply::type}}; }
};

/// "version"
struct TAVO_API VersionReply : reply_packet {
    Version version;
    bool operator==(const VersionReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"version", &VersionReply::version}}; }
};

/// "members"
struct TAVO_API MembersReply : reply_packet {
    std::vector<Member> members;
    bool operator==(const MembersReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"members", &MembersReply::members}}; }
};

/// "methods" and "methodsVerbose"; after "methods" every signature is empty.
struct TAVO_API MethodsReply : reply_packet {
    std::vector<Method> methods;
    bool operator==(const MethodsReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"methods", &MethodsReply::methods}}; }
};

/// The wire form of an entry of "methods": a Method without its signature.
struct BriefMethodForm {
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Method::name}, Field{"id", &Method::id}};
    }
};

/// The wire form of the reply to "methods".
struct BriefMethodsForm {
    static constexpr auto fields() {
        return std::tuple{listField<BriefMethodForm>("methods", &MethodsReply::methods)};
    }
};

/// "available": whether the object is free (any byte but 0), and two texts that the device defines.
struct TAVO_API AvailableReply : reply_packet {
    std::uint8_t available = 0;
    std::string user;
    std::string info;
    bool operator==(const AvailableReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"available", &AvailableReply::available},
                          Field{"user", &AvailableReply::user}, Field{"info", &AvailableReply::info}};
    }
};

/// "reserve": a flag and two texts, all the device's to define.
struct TAVO_API ReserveRequest : request_packet {
    std::uint8_t flag = 0;
    std::string first;
    std::string second;
    bool operator==(const ReserveRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"flag", &ReserveRequest::flag}, Field{"first", &ReserveRequest::first},
                          Field{"second", &ReserveRequest::second}};
    }
};

/// A single integer.
struct TAVO_API IntegerReply : reply_packet {
    std::int32_t value = 0;
    bool operator==(const IntegerReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"value", &IntegerReply::value}}; }
};

/// A clock frequency, in the device's unit, and a further integer that the device defines.
struct TAVO_API FrequencyGetReply : reply_packet {
    std::uint64_t frequency = 0;
    std::int32_t value = 0;
    bool operator==(const FrequencyGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"frequency", &FrequencyGetReply::frequency},
                          Field{"value", &FrequencyGetReply::value}};
    }
};

/// A debug header: its name and three flags that the device defines.
struct TAVO_API Header {
    std::string name;
    std::uint8_t flag1 = 0;
    std::uint8_t flag2 = 0;
    std::uint8_t flag3 = 0;
    bool operator==(const Header&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Header::name}, Field{"flag1", &Header::flag1},
                          Field{"flag2", &Header::flag2}, Field{"flag3", &Header::flag3}};
    }
};

/// A connection between headers: two lists of names that the device defines.
struct TAVO_API Connection {
    std::vector<std::string> first;
    std::vector<std::string> second;
    bool operator==(const Connection&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Connection::first}, Field{"second", &Connection::second}};
    }
};

/// "headerStatusGet" of the debug modules.
struct TAVO_API HeaderStatusGetReply : reply_packet {
    std::vector<Header> headers;
    std::vector<Connection> connections;
    bool operator==(const HeaderStatusGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"headers", &HeaderStatusGetReply::headers},
                          Field{"connections", &HeaderStatusGetReply::connections}};
    }
};

} // namespace TAVO::dto::Base
