#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

#include <bench/appliance.h>

namespace bench {

/// The processors this process may use.
std::vector<int> allowedProcessors();
void pinTo(int processor);

/// Serves the appliance in this process, with a thread per connection.
/// @param exchanges counts the requests that were answered.
/// @param tell is given the port before anybody connects.
[[noreturn]] void serveHere(Appliance& appliance, std::atomic<std::uint64_t>& exchanges,
                            const std::string& address, const std::function<void(int port)>& tell);

/// An appliance on a TCP port, in its own process with a thread per connection. It treats raw clients and the
/// library alike: reads a request by the length in its head and sends prepared bytes. It ends with this
/// object, and with the process that made it.
class ServerProcess {
public:
    /// @param processor where it runs.
    /// @param prepare runs in the new process before it listens, for instance to enter another network.
    ServerProcess(Appliance& appliance, int processor, const std::string& address = "127.0.0.1",
                  const std::function<void()>& prepare = {});
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
    ~ServerProcess();

    const std::string& address() const { return address_; }
    int port() const { return port_; }
    pid_t process() const { return process_; }
    /// Requests answered so far, over all connections.
    std::uint64_t exchanges() const { return *exchanges_; }

private:
    std::string address_;
    std::atomic<std::uint64_t>* exchanges_; ///< in memory shared by both processes
    pid_t process_ = -1;
    int port_ = 0;
};

} // namespace bench
