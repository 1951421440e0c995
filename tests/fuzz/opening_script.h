#pragma once

#include <map>

#include <tavo/client/wire/byte_order.h>
#include <tavo/simulator/topology.h>
#include <tests/fuzz/simulated_device.h>

namespace fuzz {

/// A simulated appliance whose answers a script spoils. The script: the number of the topology (1 byte), then
/// steps of one byte and what belongs to it; the rest of one step answers one request. Behind the last step
/// the appliance answers all.
class OpeningScript : public Peer {
public:
    enum Step {
        /// The appliance answers so many requests (1 byte).
        honest,
        /// These bytes are the answer (block).
        whole,
        /// These bytes are the one result (block).
        result,
        /// The appliance's answer, from there (2 bytes) overwritten with these bytes (block).
        overwritten,
        /// The appliance's answer, cut after so many bytes (2 bytes).
        cut,
        stepCount
    };

    explicit OpeningScript(View script)
        : script_(script.data(), script.size())
        , appliance_(applianceNumber(script_.byte())) {
        appliance_.appliance().reset();
    }

    Bytes answer(View request) override {
        if (honestly_ > 0 || script_.empty()) {
            honestly_ -= honestly_ > 0;
            return truth(request);
        }
        switch (script_.byte() % stepCount) {
        case honest:
            honestly_ = script_.byte();
            return truth(request);
        case whole: {
            const auto bytes = script_.block();
            return {bytes.begin(), bytes.end()};
        }
        case result: {
            const auto block = script_.block();
            Bytes bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0};
            bytes.push_back(static_cast<std::uint8_t>(block.size() >> 8));
            bytes.push_back(static_cast<std::uint8_t>(block.size()));
            bytes.insert(bytes.end(), block.begin(), block.end());
            return bytes;
        }
        case overwritten: {
            auto bytes = truth(request);
            std::size_t at = script_.word();
            for (const auto byte : script_.block())
                if (at < bytes.size())
                    bytes[at++] = byte;
            return bytes;
        }
        default: {
            auto bytes = truth(request);
            bytes.resize(std::min<std::size_t>(bytes.size(), script_.word()));
            return bytes;
        }
        }
    }

private:
    /// Made once: an opening leaves nothing behind that reset() does not undo.
    static MemoryAppliance& applianceNumber(std::size_t number) {
        static std::map<const TAVO::simulator::Topology*, std::unique_ptr<MemoryAppliance>> made;
        const auto& topology = topologyNumber(number);
        auto& appliance = made[&topology];
        if (!appliance)
            appliance = std::make_unique<MemoryAppliance>(topology);
        return *appliance;
    }

    Bytes truth(View request) { return appliance_.respond(request).bytes; }

    Input script_;
    MemoryAppliance& appliance_;
    unsigned honestly_ = 0;
};

} // namespace fuzz
