#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

/// The bytes written by hand in tests/golden.
namespace support {

struct GoldenRequest {
    /// Null for a method without parameters.
    nlohmann::json record;
    std::vector<std::uint8_t> bytes;
};

struct GoldenReply {
    std::int32_t code = 0;
    /// Null for a method that returns its status alone.
    nlohmann::json record;
    std::vector<std::uint8_t> bytes;
    /// What the same reply is written as: other bytes only where a flag byte is neither 0 nor 1.
    std::vector<std::uint8_t> writtenBytes;
};

struct GoldenVector {
    std::string method;
    std::string name;
    std::optional<GoldenRequest> request;
    std::optional<GoldenReply> reply;
};

/// The vectors of one remote type and version.
struct GoldenFile {
    std::string type;
    std::string version;
    std::vector<GoldenVector> vectors;
};

/// The methods of a type in the order of its vectors; none for a type without a file.
std::vector<std::string> goldenMethods(const std::string& type, const std::string& version);

/// The names of the files, without folder and ".json".
std::vector<std::string> goldenFileNames();

/// @throws std::exception that names the vector when something in the file is not as it must be.
GoldenFile loadGoldenFile(const std::string& name);

} // namespace support
