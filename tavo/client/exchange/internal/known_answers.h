#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace TAVO {

class Method;

/// Results of calls without parameters, as the device sent them, for calls that are about to be made.
class KnownAnswers {
public:
    using Bytes = std::vector<std::uint8_t>;

    void add(std::uint32_t instanceId, std::uint32_t methodId, Bytes result);
    /// Null when it is not known what the device would answer.
    const Bytes* find(const Method& method) const;
    const Bytes* find(std::uint32_t instanceId, std::uint32_t methodId) const;
    /// Of all results together.
    std::size_t size() const { return size_; }

private:
    std::unordered_map<std::uint64_t, Bytes> results_;
    std::size_t size_ = 0;
};

} // namespace TAVO
