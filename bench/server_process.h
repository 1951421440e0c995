#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

#include <bench/appliance.h>

namespace bench {

/// The processors that this process may use.
std::vector<int> allowedProcessors();
void pinTo(int processor);

/// An appliance on a TCP port, in a process of its own with a thread for each connection. It answers raw
/// clients and the library alike: reads a request by the length that its head tells, sends prepared bytes. It
/// ends with this object, and with the process that made it.
class ServerProcess {
public:
    /// @param processor where it runs.
    /// @param prepare   runs in the new process before it listens, such as to enter a network of its own.
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
    std::atomic<std::uint64_t>* exchanges_; ///< in memory that both processes share
    pid_t process_ = -1;
    int port_ = 0;
};

} // namespace bench
