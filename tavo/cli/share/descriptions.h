#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include <tavo/client/transcode/base_records.h>
#include <tavo/server/frames.h>

namespace TAVO::cli {

/// What a call of a client means to the share.
enum class CallMeaning {
    work,        ///< for the device; needs the lock
    description, ///< for the device, but its result stays the same until the device changes; needs no lock
    change,      ///< like work; afterwards the device may describe itself anew
    lock,        ///< these three the share answers itself
    unlock,
    login
};

/// What the device has told about its objects: the names of their methods, and the results of the calls that
/// describe them.
class Descriptions {
public:
    using Bytes = std::vector<std::uint8_t>;
    using Methods = std::vector<dto::Base::Method>;

    /// The methods of a fixed object. They stay when the rest is forgotten: "lock" must never be taken for
    /// work.
    void setFixedMethods(std::uint32_t instanceId, const std::string& name, const Methods& methods);

    CallMeaning meaningOf(const server::CallFrame& call) const;
    /// The result of a description, as it came; null if it is not known.
    const Bytes* find(const server::CallFrame& call) const;
    /// Keeps the result of a description, unless it tells of a failure or too much is kept already.
    void learn(const server::CallFrame& call, Bytes result);
    void forget();
    bool knows(std::uint32_t instanceId) const { return objects_.contains(instanceId); }

    /// How many bytes of results may be kept of one request.
    static constexpr std::size_t mostBytesOfRequest = std::size_t{4} << 20;
    /// "bench.lamp.set" and the like, with numbers in place of names that are not known.
    std::string nameOf(const server::CallFrame& call) const;

private:
    using MethodNames = std::map<std::uint32_t, std::string>;

    struct Object {
        std::string path;
        MethodNames methods;
        std::map<std::uint32_t, Bytes> results;
    };

    const std::string* methodName(const server::CallFrame& call) const;
    void learnMethods(std::uint32_t instanceId, const Bytes& result);
    void learnMembers(std::uint32_t instanceId, const std::string& method, const Bytes& result);

    std::unordered_map<std::uint32_t, Object> objects_;
    std::unordered_map<std::uint32_t, Object> fixed_;
    std::size_t heldBytes_ = 0;
};

} // namespace TAVO::cli
