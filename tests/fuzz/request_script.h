#pragma once

#include <string>
#include <vector>

#include <tests/fuzz/simulated_device.h>

namespace fuzz {

/// A method of an object of an appliance, as a client learns of it.
struct ListedMethod {
    std::uint32_t instanceId;
    std::uint32_t methodId;
    std::string type;
    std::string version;
    std::string name;
};

/// All methods of all objects, asked of the appliance by its own protocol.
std::vector<ListedMethod> listMethods(MemoryAppliance& appliance);

/// What a client sends, made from an input: steps of one byte and what belongs to it.
struct RequestScript {
    enum Step {
        /// These bytes are sent (block).
        raw,
        /// One request with one call: lock id (see LockId), method by number (2 bytes), parameters (block).
        call,
        /// One request with several calls: lock id, how many (1 byte), then for each method and parameters.
        batch,
        stepCount
    };
    enum LockId { none, holders, other, lockIdCount };
};

/// The bytes of the next step.
Bytes nextBytes(Input& script, const std::vector<ListedMethod>& methods, std::uint32_t lockId);

} // namespace fuzz
