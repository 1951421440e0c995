#pragma once

#include <atomic>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/transport.h>
#include <tests/support/fake_device.h>

namespace support {

/// What happened on the connections of a MemoryTransport, and what shall happen. Outlives it.
struct MemoryLine {
    FakeAppliance appliance;
    /// "connect", and the calls as "id.method".
    std::vector<std::string> log;
    /// Calls behind whose reply the connection ends.
    std::set<std::string> endsBehind;
    /// The connection ends right before the next request is sent, where nobody looks any more.
    bool endsBeforeSend = false;
    /// The transport makes new connections when it is asked to.
    bool renews = true;
    /// Somebody has sent bytes that nobody asked for.
    bool hasStrayBytes = false;
    std::atomic<int> interrupts = 0;
    bool isGone = false;
};

/// An application's own transport, to an appliance in memory.
class MemoryTransport : public TAVO::Transport {
public:
    explicit MemoryTransport(MemoryLine& line)
        : line_(line)
        , appliance_(line.appliance) {}
    ~MemoryTransport() override { line_.isGone = true; }

    void send(const TAVOX::OutputStream::Chunks& request) override {
        if (std::exchange(line_.endsBeforeSend, false))
            open_ = false;
        ensureConnected();
        appliance_.send(request);
        line_.log.push_back(line_.appliance.callNames().back());
        if (line_.endsBehind.contains(line_.log.back()))
            open_ = false;
    }
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        appliance_.receiveAll(buffer, length);
    }
    void interrupt() noexcept override { ++line_.interrupts; }
    bool renew() noexcept override {
        if (!line_.renews)
            return false;
        open_ = line_.hasStrayBytes = false;
        return true;
    }
    bool hasUnaskedBytes() noexcept override { return line_.hasStrayBytes; }
    void ensureConnected() override {
        if (open_)
            return;
        if (kept_)
            throw TAVO::NetworkError("Connection to device closed unexpectedly.");
        open_ = true;
        ++number_;
        line_.log.emplace_back("connect");
    }
    std::uint64_t connectionNumber() const noexcept override { return number_; }
    void keepConnection(bool kept) noexcept override { kept_ = kept; }

private:
    MemoryLine& line_;
    ApplianceTransport appliance_;
    bool open_ = false;
    bool kept_ = false;
    std::uint64_t number_ = 0;
};

} // namespace support
