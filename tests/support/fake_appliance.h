#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <tests/support/wire_bytes.h>

/// A device's objects in memory, which answer whole requests with whole replies, byte by byte and without any
/// code of the library.
namespace support {

/// Thrown by an answer: the reply carries this device error and the results before it.
struct DeviceFault {
    std::uint32_t code;
    std::string message;
};

/// A result block: the return code and the reply's bytes.
inline Bytes result(std::uint32_t code, const Bytes& reply = {}) { return joined({u32(code), reply}); }

class FakeObject {
public:
    /// Makes the result block of a call from its parameter bytes.
    using Answer = std::function<Bytes(const Bytes& parameters)>;

    FakeObject(std::uint32_t id, const std::string& type);
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;

    std::uint32_t id() const { return id_; }

    /// Lists the method, under an id of its own, and answers it; a second time replaces the answer.
    FakeObject& method(const std::string& name, Answer answer);
    /// The same with a fixed result block.
    FakeObject& method(const std::string& name, const Bytes& resultBlock);
    /// The same with a status of 0.
    FakeObject& method(const std::string& name) { return method(name, result(0)); }
    /// A member of that name; the object behind the id is added to the appliance by itself.
    FakeObject& member(const std::string& name, std::uint32_t id);
    /// 1, 0, 0 unless it is set.
    FakeObject& version(std::uint32_t major, std::uint32_t minor, std::uint32_t bugfix);
    /// One more line in the list of methods, with any name and id.
    FakeObject& listedMethod(const std::string& name, std::uint32_t methodId);
    /// From now on "methods" lists nothing of what was there.
    FakeObject& withoutListedMethods();

    std::uint32_t methodId(const std::string& name) const { return answered_.at(name).id; }

private:
    friend class FakeAppliance;

    struct Answered {
        std::uint32_t id;
        Answer answer;
    };
    using Pairs = std::vector<std::pair<std::string, std::uint32_t>>;

    static Bytes list(const Pairs& pairs);

    std::uint32_t id_;
    std::array<std::uint32_t, 3> version_{1, 0, 0};
    Pairs members_;
    Pairs listed_;
    std::map<std::string, Answered> answered_;
};

struct FakeCall {
    std::uint32_t lockId = 0;
    std::uint32_t instanceId = 0;
    std::string method;
    Bytes parameters;
    bool operator==(const FakeCall&) const = default;
};

void PrintTo(const FakeCall& call, std::ostream* out);

class FakeAppliance {
public:
    /// A new object, whose address is stable. It answers "type", "version", "members" and "methods", and the
    /// others when they are told.
    FakeObject& add(std::uint32_t id, const std::string& type);
    FakeObject& object(std::uint32_t id);

    /// The reply to one whole request.
    Bytes answer(const Bytes& request);

    /// All calls so far, in order.
    const std::vector<FakeCall>& calls() const { return calls_; }
    /// The same as "id.method".
    std::vector<std::string> callNames() const;
    /// Number of requests so far.
    std::size_t exchanges() const { return exchanges_; }
    void forgetCalls();

private:
    std::deque<FakeObject> objects_;
    std::vector<FakeCall> calls_;
    std::size_t exchanges_ = 0;
};

/// The fixed objects of a device, "device" 0, "system" 1 and "private" 2, with the methods of "device" that
/// opening needs: lock id 0x51, the first known key, no root members.
void addFixedObjects(FakeAppliance& appliance);

} // namespace support
