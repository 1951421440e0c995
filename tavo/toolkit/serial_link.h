#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <tavo/client.h>
#include <tavo/toolkit/access.h>

namespace TAVO::toolkit {

/// The serial port of a device, open while this exists.
class SerialLink {
public:
    /// Opens the port; closes it again if that fails, unless the device refused. `access` must outlive this.
    SerialLink(Access& access, std::shared_ptr<CommonModules::Com_v1_0> port,
               const dto::com::OpenRequest& settings);
    SerialLink(const SerialLink&) = delete;
    SerialLink& operator=(const SerialLink&) = delete;
    /// Closes the port if it is still open. Ignores errors: an exception is already on its way.
    ~SerialLink();

    /// Sends exactly these bytes and receives what has arrived, in one exchange.
    std::string exchange(std::string_view bytes);
    void close();
    /// Leaves the port as it is: for when nobody can be asked to close it.
    void abandon() noexcept { open_ = false; }

private:
    void closeQuietly() noexcept;

    Access& access_;
    std::shared_ptr<CommonModules::Com_v1_0> port_;
    bool open_ = false;
};

/// Sends a break over a port that is not open. There is no method for it: a zero byte at half the rate or
/// less holds the line as long as a break does.
/// @throws BadRequest if the rate is so low that there is no slower one.
void sendBreak(Access& access, const std::shared_ptr<CommonModules::Com_v1_0>& port,
               dto::com::OpenRequest settings);

} // namespace TAVO::toolkit
