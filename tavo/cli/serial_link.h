#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <tavo/cli/session_access.h>
#include <tavo/toolkit/serial_link.h>

namespace TAVO::cli {

/// The serial port of a device, open while this exists.
class SerialLink {
public:
    /// Opens the port. @throws Failure (refused) if the device does not accept the settings.
    SerialLink(Session& session, std::shared_ptr<CommonModules::Com_v1_0> port,
               const dto::com::OpenRequest& settings)
        : access_(session)
        , link_(access_, std::move(port), settings) {}

    /// Sends exactly these bytes and receives what has arrived, in one exchange.
    std::string exchange(std::string_view bytes) { return link_.exchange(bytes); }
    void close() { link_.close(); }

private:
    SessionAccess access_;
    toolkit::SerialLink link_;
};

/// Sends a break over a port that is not open.
/// @throws toolkit::BadRequest if the rate is so low that there is no slower one, Failure (refused) if the
///         port does not take that one.
inline void sendBreak(Session& session, const std::shared_ptr<CommonModules::Com_v1_0>& port,
                      const dto::com::OpenRequest& settings) {
    SessionAccess access(session);
    toolkit::sendBreak(access, port, settings);
}

/// Searches for a text in bytes that arrive in pieces.
class TextWatch {
public:
    /// An empty `wanted` is never found.
    explicit TextWatch(std::string wanted)
        : wanted_(std::move(wanted)) {}

    /// Adds these bytes. Returns whether the text has been seen so far.
    bool sees(std::string_view bytes);

private:
    std::string wanted_;
    std::string end_;
    bool seen_ = false;
};

} // namespace TAVO::cli
