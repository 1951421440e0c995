#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <tavo/cli/serial_serve/line_settings.h>

namespace TAVO::cli {

/// A serial line as its clients see it. Where it has failed it says nothing, and takes no settings.
class ServedLine {
public:
    /// At most sent at once, so that what comes back does not wait for all of it.
    static constexpr std::size_t mostSentAtOnce = 4096;

    virtual ~ServedLine() = default;
    /// Sends these bytes. @return what has come meanwhile.
    virtual std::string exchange(std::string_view bytes) = 0;
    /// Drops what has come.
    virtual void dropReceived() = 0;
    /// @return whether the line has these settings now; otherwise it keeps those that it has.
    virtual bool set(const LineSettings& settings) = 0;
    virtual const LineSettings& settings() const = 0;
    /// @return whether it was sent.
    virtual bool sendBreak() = 0;
    /// Whether there is any use in asking what has come.
    virtual bool works() const = 0;
    /// How messages call the port.
    virtual std::string name() const = 0;
    virtual void warn(const std::string& what) = 0;
};

} // namespace TAVO::cli
