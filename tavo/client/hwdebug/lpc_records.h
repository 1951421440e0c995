#pragma once

#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "lpc" object.
namespace TAVO::dto::lpc {

/// A header connection and whether it is present.
struct TAVO_API HeaderConnection {
    std::string name;
    bool connected = false;
    bool operator==(const HeaderConnection&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"name", &HeaderConnection::name},
                          Field{"connected", &HeaderConnection::connected}};
    }
};

/// "headerConnectGet"
struct TAVO_API HeaderConnectionsReply : reply_packet {
    std::vector<HeaderConnection> connections;
    bool operator==(const HeaderConnectionsReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"connections", &HeaderConnectionsReply::connections}};
    }
};

} // namespace TAVO::dto::lpc
