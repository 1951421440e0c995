#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/object/device.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/wire/transport.h>
#include <tests/support/fake_appliance.h>

namespace support {

/// Hands each request to an appliance in memory and yields its reply.
class ApplianceTransport : public TAVO::Transport {
public:
    explicit ApplianceTransport(FakeAppliance& appliance)
        : appliance_(appliance) {}

    void send(const TAVOX::OutputStream::Chunks& chunks) override {
        Bytes request;
        for (const auto chunk : chunks)
            request.insert(request.end(), chunk.begin(), chunk.end());
        reply_ = appliance_.answer(request);
        received_ = 0;
    }

    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override {
        if (reply_.size() - received_ < length)
            throw std::runtime_error("more is received than the reply holds");
        std::copy_n(reply_.begin() + static_cast<std::ptrdiff_t>(received_), length, buffer);
        received_ += static_cast<std::size_t>(length);
    }

private:
    FakeAppliance& appliance_;
    Bytes reply_;
    std::size_t received_ = 0;
};

/// A device without a connection: the library's own exchange, encoders and decoders run against objects in
/// memory. Handled by a shared pointer, as every device.
class FakeDevice : public TAVO::Device {
public:
    FakeAppliance appliance;

    void call(std::shared_ptr<TAVO::Method> method) override { exchange_.run(lockId, std::span(&method, 1)); }
    void multicall(std::shared_ptr<TAVO::MulticallQueue> queue) override {
        const std::vector<std::shared_ptr<TAVO::Method>> batch(queue->getMethods().begin(),
                                                               queue->getMethods().end());
        exchange_.run(lockId, batch);
    }
    void unlock() override { actions.push_back("unlock"); }
    void getKey() override { actions.push_back("getKey"); }
    bool checkTavoKey(bool& first, bool& second) const override { return first = second = false; }
    int getMaxPacketSize() override { return 0; }

    /// What was asked of the device beside calls, in order.
    std::vector<std::string> actions;
    std::uint32_t lockId = 0;

protected:
    void lock(const std::string& user, const std::string&) override { actions.push_back("lock " + user); }
    void lock() override { actions.push_back("lock"); }
    bool login(const std::string& user, const std::string&) override {
        actions.push_back("login " + user);
        return true;
    }

private:
    ApplianceTransport transport_{appliance};
    TAVO::CallExchange exchange_{transport_};
};

} // namespace support
