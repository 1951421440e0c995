#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/client/object/method_tables.h>
#include <tavo/client/object/version.h>
#include <tavo/trace/exchange_scanner.h>

namespace TAVO::trace {

/// What the numbers of a device's objects and methods mean, learnt from what it tells.
class Names {
public:
    Names();

    /// Whether the result of the call tells names.
    bool teaches(const CallId& call) const;
    /// Learns from a result; ignores one that cannot be read.
    void learn(const CallId& call, Bytes result);
    /// Learns from the document that "tavo --json tree --methods" prints.
    /// @throws std::runtime_error if it is none.
    void load(std::string_view document);

    /// Null if it is not known.
    const std::string* method(const CallId& call) const;
    /// "bench.lamp.set" and the like, with numbers in place of names that are not known.
    std::string nameOf(const CallId& call) const;
    /// The description of the call; null if its type or name is not known.
    const TAVOXTranscode::MethodRow* row(const CallId& call) const;
    bool knows(std::uint32_t instanceId) const;

private:
    struct Object {
        std::string path;
        std::string type;
        Version version;
        std::map<std::uint32_t, std::string> methods;
    };

    void learnMembers(std::uint32_t instanceId, const std::string& method, Bytes result);
    bool hasRoom(std::size_t bytes);

    std::map<std::uint32_t, Object> objects_;
    std::size_t heldBytes_ = 0;
};

} // namespace TAVO::trace
