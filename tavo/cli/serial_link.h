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
    /// Opens the port. @throws Failure (refused) when the device does not accept the settings.
    SerialLink(Session& session, std::shared_ptr<CommonModules::Com_v1_0> port,
               const dto::com::OpenRequest& settings);
    SerialLink(const SerialLink&) = delete;
    SerialLink& operator=(const SerialLink&) = delete;
    /// Closes it, if that was not done, and forgets errors: there is one on its way already.
    ~SerialLink();

    /// Sends exactly these bytes, and takes what has arrived, in one exchange.
    std::string exchange(std::string_view bytes);
    void close();

private:
    Session& session_;
    std::shared_ptr<CommonModules::Com_v1_0> port_;
    bool open_ = false;
};

/// Looks for a text in bytes that come in pieces.
class TextWatch {
public:
    /// Nothing is ever found when `wanted` is empty.
    explicit TextWatch(std::string wanted)
        : wanted_(std::move(wanted)) {}

    /// Whether the text was there, or is with these bytes.
    bool sees(std::string_view bytes);

private:
    std::string wanted_;
    std::string end_;
    bool seen_ = false;
};

} // namespace TAVO::cli
