#pragma once

#include <memory>
#include <string>

#include <tavo/cli/descriptor.h>
#include <tavo/cli/stream_transport.h>

namespace TAVO::cli {

/// A connection to a share on this machine.
class LocalTransport final : public StreamTransport {
public:
    /// @param path of the share's socket. @param connected the first connection to it.
    LocalTransport(std::string path, Descriptor connected, std::shared_ptr<Stop> stop);
    ~LocalTransport() override;

private:
    int openStream() override;
    void closeStream(Milliseconds patience) noexcept override;
    std::string fate() override;

    std::string path_;
    Descriptor waiting_; ///< not yet used
    Descriptor connection_;
};

} // namespace TAVO::cli
