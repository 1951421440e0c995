#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <tavo/trace/exchange.h>
#include <tavo/trace/segment.h>
#include <tavo/trace/tcp_assembler.h>

namespace TAVO::trace {

/// Finds the conversations with devices in a capture. Others in it are ignored.
class Capture {
public:
    /// @param names what is known of all devices before.
    /// @param mostKept how many bytes to keep of each run of parameters and of each result.
    Capture(Names names, std::size_t mostKept, ExchangeRecorder::Visit visit);
    ~Capture();

    /// Reads the whole file and visits each exchange when its reply is complete, then those without one.
    /// @throws FormatError for a file that cannot be read.
    void read(std::istream& in);
    /// What is wrong with the file, in words; there may be exchanges all the same.
    const std::vector<std::string>& problems() const { return problems_; }

private:
    struct Connection;
    using Ends = std::pair<Endpoint, Endpoint>;

    /// What connections to one device have in common.
    struct Device {
        Names names;
        std::size_t connections = 0;
        /// It has answered, or has the port of one.
        bool isCertain = false;
    };

    void take(const Segment& segment, std::chrono::nanoseconds time);
    std::unique_ptr<Connection> newConnection(const Ends& ends);
    void deliver(Connection& connection, std::size_t from, Bytes bytes, std::chrono::nanoseconds time);
    /// Forgets connections that are over, and those that matter least if too many go on.
    void makeRoom();
    void finish(Connection& connection);
    void note(const Connection& connection, const std::string& what);

    Names known_;
    std::size_t mostKept_;
    ExchangeRecorder::Visit visit_;
    /// Null for one of which nothing more is of use.
    std::map<Ends, std::unique_ptr<Connection>> connections_;
    std::uint64_t segments_ = 0;
    /// By the device's end.
    std::map<Endpoint, Device> devices_;
    /// How many of them are not certain.
    std::size_t uncertain_ = 0;
    std::uint32_t conversations_ = 0;
    std::vector<std::string> problems_;
};

} // namespace TAVO::trace
