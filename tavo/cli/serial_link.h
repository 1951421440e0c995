#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <tavo/cli/session.h>

namespace TAVO::cli {

/// The serial port of a device, open while this exists.
class SerialLink {
public:
    /// Opens the port. @throws Failure (refused) if the device does not accept the settings.
    SerialLink(Session& session, std::shared_ptr<CommonModules::Com_v1_0> port,
               const dto::com::OpenRequest& settings);
    SerialLink(const SerialLink&) = delete;
    SerialLink& operator=(const SerialLink&) = delete;
    /// Closes the port if it is still open. Ignores errors: an exception is already on its way.
    ~SerialLink();

    /// Sends exactly these bytes and receives what has arrived, in one exchange.
    std::string exchange(std::string_view bytes);
    void close();

private:
    Session& session_;
    std::shared_ptr<CommonModules::Com_v1_0> port_;
    bool open_ = false;
};

/// Sends a break over a port that is not open. There is no method for it: a zero byte at half the rate or
/// less holds the line as long as a break does.
/// @throws Failure (usage) if the rate is so low that there is no slower one, Failure (refused) if the port
/// does
///         not take that one.
void sendBreak(Session& session, const std::shared_ptr<CommonModules::Com_v1_0>& port,
               dto::com::OpenRequest settings);

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
