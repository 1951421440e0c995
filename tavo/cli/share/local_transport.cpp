#include <tavo/cli/share/local_transport.h>

#include <utility>

#include <fmt/format.h>

#include <tavo/cli/share/share_socket.h>
#include <tavo/client/wire/error.h>

namespace TAVO::cli {

LocalTransport::LocalTransport(std::string path, Descriptor connected, std::shared_ptr<Stop> stop)
    : StreamTransport(std::move(stop))
    , path_(std::move(path))
    , waiting_(std::move(connected)) {}

LocalTransport::~LocalTransport() = default;

int LocalTransport::openStream() {
    connection_ = waiting_.isOpen() ? std::move(waiting_) : share_socket::connect(path_);
    if (!connection_.isOpen())
        throw NetworkError(fmt::format("The share {} has ended.", path_));
    return connection_.number();
}

void LocalTransport::closeStream(Milliseconds) noexcept { connection_.close(); }

std::string LocalTransport::fate() {
    return fmt::format("It went through the share {}; --direct goes round it.", path_);
}

} // namespace TAVO::cli
