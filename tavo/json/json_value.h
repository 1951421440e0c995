#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/client/transcode/value.h>

/// Records read from JSON. An object becomes a record, an array a list; numbers, flags and texts stay as they
/// are. JSON has neither bytes nor texts that are not UTF-8, so these are objects with one member: `{"hex":
/// "00ff"}` and `{"hex-text": "00ff"}`.
namespace TAVO::json {

/// A text is no JSON document; what() says where and why.
class NotJson : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// A document that has been parsed. Unlike that of a bare nlohmann::json, its destruction takes no memory.
class Document {
public:
    explicit Document(nlohmann::json root)
        : root_(std::move(root)) {}
    Document(Document&&) = default;
    Document& operator=(Document&&) = delete;
    ~Document();

    const nlohmann::json& root() const { return root_; }

private:
    nlohmann::json root_;
};

/// Parses one JSON document.
/// @throws NotJson "is not JSON: ..."
/// @throws std::invalid_argument "is nested too deeply" beyond 64 levels, far more than any record has;
///         "gives 'NAME' twice" for an object that does.
Document parseDocument(std::string_view text);

/// Blocks of bytes beside a JSON document, which refers to them as `{"block": index}`.
using Blocks = std::span<const std::span<const std::uint8_t>>;

/// A number keeps the signedness it has in `node`.
/// @throws std::invalid_argument that names the place, for anything no record can hold: null, a number that
///         is not an integer or exceeds 64 bits, bad hexadecimal digits.
Value fromJson(const nlohmann::json& node);
/// The same with `{"block": index}` for bytes, too.
/// @param path names the value in messages.
/// @throws std::invalid_argument also for a block that is not there.
Value fromJson(const nlohmann::json& node, Blocks blocks, const std::string& path);

/// Parses pairs of hexadecimal digits. Ignores blanks between pairs.
/// @throws std::invalid_argument for anything else.
std::vector<std::uint8_t> bytesFromHex(std::string_view digits);

} // namespace TAVO::json
