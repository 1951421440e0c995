#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>

#include <tavo/cli/descriptor.h>

/// The sockets in the file system by which programs of this machine find a share.
namespace TAVO::cli::share_socket {

/// Where the share for that device and user is, if there is one: a file in the folder "tavo" of
/// $XDG_RUNTIME_DIR. Empty without such a folder, and where the name is too long for a socket.
/// @param via the command that leads to the device; empty for none. The same host may be another device
///        through another command.
std::string pathFor(const std::string& host, int port, const std::string& user, const std::string& via);

/// Connects to a share of this user. The descriptor is closed when there is none.
Descriptor connect(const std::string& path);

/// The listening socket of a share; its file goes with it.
class File {
public:
    /// @throws Failure (usage) when another share has it, or the system refuses.
    File(asio::io_context& context, std::string path);
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File();

    const std::string& path() const { return path_; }
    /// To be taken once.
    asio::local::stream_protocol::acceptor& acceptor() { return acceptor_; }

private:
    void listen();

    std::string path_;
    /// Device and inode of the file.
    std::pair<std::uintmax_t, std::uintmax_t> identity_;
    asio::local::stream_protocol::acceptor acceptor_;
};

} // namespace TAVO::cli::share_socket
