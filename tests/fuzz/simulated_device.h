#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/exchange/call_exchange.h>
#include <tavo/client/object/device.h>
#include <tavo/client/object/object.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/transport.h>
#include <tavo/simulator/appliance.h>
#include <tavo/simulator/internal/call_runner.h>
#include <tavo/simulator/topology.h>
#include <tests/fuzz/fuzz_input.h>

namespace fuzz {

/// A simulated appliance without connections, whose time stands still but for what clients let it sleep.
class MemoryAppliance {
public:
    explicit MemoryAppliance(const TAVO::simulator::Topology& topology);

    TAVO::simulator::Response respond(View request);
    /// The answer to a request that is too large.
    TAVO::simulator::Response refuse();

    TAVO::simulator::Appliance& appliance() { return appliance_; }
    std::uint32_t lockId();

private:
    TAVO::simulator::Appliance appliance_;
    std::uint64_t requests_ = 0;
};

/// The topologies of the simulator, then one for each type and version, with an object of it and the relay
/// "power" that switches the board: an appliance that is made in a fraction of the time.
const std::vector<TAVO::simulator::Topology>& topologies();

/// The topology that a number of an input stands for.
const TAVO::simulator::Topology& topologyNumber(std::size_t number);

/// Whoever answers the requests of a MemoryDevice.
class Peer {
public:
    virtual ~Peer() = default;
    /// The bytes that arrive after a request. What is left of those of the request before is gone.
    virtual Bytes answer(View request) = 0;
};

/// A device as TAVOXDevice, over a peer instead of a connection. When it is asked for more bytes than came,
/// the connection is closed.
class MemoryDevice : public TAVO::Device {
public:
    /// @param peer must outlive the device.
    explicit MemoryDevice(Peer& peer)
        : transport_(peer) {}
    ~MemoryDevice() override;

    void call(std::shared_ptr<TAVO::Method> method) override;
    void multicall(std::shared_ptr<TAVO::MulticallQueue> queue) override;
    void unlock() override;
    void getKey() override;
    bool checkTavoKey(bool& first, bool& second) const override;
    int getMaxPacketSize() override { return 0; }

    /// Bytes that have arrived so far.
    std::size_t received() const { return transport_.total; }

protected:
    void lock(const std::string& user, const std::string& password) override;
    void lock() override;
    bool login(const std::string& user, const std::string& password) override;

private:
    struct Transport : TAVO::Transport {
        explicit Transport(Peer& answering)
            : peer(answering) {}
        void send(const TAVOX::OutputStream::Chunks& chunks) override;
        void receiveAll(std::uint8_t* buffer, std::uint64_t length) override;

        Peer& peer;
        Bytes reply;
        std::size_t taken = 0;
        std::size_t total = 0;
    };

    Transport transport_;
    TAVO::CallExchange exchange_{transport_};
    std::uint32_t lockId_ = 0;
    std::string user_;
    std::string password_;
    std::vector<std::uint8_t> key_;
};

/// Opens the device as DeviceFactory::queryDevice and openDevice do: the object "device", the key, the lock,
/// the tree.
void open(const std::shared_ptr<MemoryDevice>& device);

/// All objects of an open device.
std::vector<std::shared_ptr<TAVO::Object_v1_0>> objectsOf(TAVO::Device& device);

/// Answers as the appliance does.
class AppliancePeer : public Peer {
public:
    explicit AppliancePeer(MemoryAppliance& appliance)
        : appliance_(appliance) {}
    Bytes answer(View request) override { return appliance_.respond(request).bytes; }

private:
    MemoryAppliance& appliance_;
};

} // namespace fuzz
