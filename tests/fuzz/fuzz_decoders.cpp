#include <memory>
#include <string>

#include <tavo/cli/values/json_value.h>
#include <tests/fuzz/fuzz_input.h>
#include <tests/fuzz/method_choice.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/value_json.h>

// Every decoder of every table. Input: the number of the row (2 bytes), which record (even: the reply, odd:
// the request), then what is decoded.

namespace {

using fuzz::Bytes;
using fuzz::require;
using fuzz::View;
using TAVO::TAVOXTranscode::MethodRow;
using TAVO::TAVOXTranscode::RecordDescription;
using TAVOX::InputStream;
using TAVOX::OutputStream;

Bytes written(const OutputStream& out) {
    require(!out.failed(), "a writer with memory does not fail");
    Bytes bytes;
    for (const auto chunk : out.chunks())
        bytes.insert(bytes.end(), chunk.begin(), chunk.end());
    require(bytes.size() == out.total(), "the chunks hold what was written");
    return bytes;
}

/// A reader over its own copy of the bytes, so that the sanitizer sees reads behind their end.
class Block {
public:
    explicit Block(View bytes)
        : bytes_(bytes.begin(), bytes.end())
        , in(bytes_.data(), bytes_.size()) {}

    std::size_t consumed() const { return static_cast<std::size_t>(in.size() - in.remaining()); }

private:
    Bytes bytes_;

public:
    InputStream in;
};

void checkReader(InputStream& in, std::size_t size) {
    require(in.size() == size && in.remaining() <= size, "the reader stays inside its block");
    if (!in.failed())
        return;
    const auto remaining = in.remaining();
    require(in.readInt32() == 0 && in.readInt64() == 0 && in.readByte() == 0 && !in.readSpan(0),
            "a failed reader yields zeros");
    require(in.failed() && in.remaining() == remaining, "a failed reader consumes nothing");
}

/// No size that the peer names may cost memory by itself: the record, and so much for each byte that came.
void checkMemory(const support::AllocationMeter& meter, std::size_t size) {
    constexpr std::size_t forTheRecord = 4096;
    constexpr std::size_t forEachByte = 128;
    require(meter.largest() <= forTheRecord + forEachByte * size, "memory follows the bytes that came",
            std::to_string(meter.largest()) + " for " + std::to_string(size));
}

template <class Packet>
void checkValue(const RecordDescription<Packet>& description, const Packet& packet) {
    const auto value = description.toValue(packet);
    require(value == description.toValue(packet), "a record is told in one way");
    static_cast<void>(value.toString());

    auto copy = description.create();
    description.fromValue(value, *copy);
    require(description.toValue(*copy) == value, "a record survives the way through data");

    const auto json = nlohmann::json::parse(support::toJson(value).dump());
    auto read = description.create();
    description.fromValue(TAVO::cli::fromJson(json), *read);
    require(description.toValue(*read) == value, "a record survives the way through JSON");
}

/// A record that was read from the first `consumed` bytes.
template <class Packet>
void checkRecord(const RecordDescription<Packet>& description, const Packet& packet, View bytes) {
    OutputStream out;
    description.write(out, packet);
    const auto again = written(out);
    require(again.size() == bytes.size(), "a record is written with as many bytes as it was read from");

    Block block(again);
    auto copy = description.create();
    description.read(block.in, *copy);
    require(!block.in.failed() && block.in.remaining() == 0, "what was written can be read");
    const auto value = description.toValue(packet);
    require(description.toValue(*copy) == value, "a record survives the way through bytes");
    OutputStream second;
    description.write(second, *copy);
    require(written(second) == again, "a record is written in one way");

    if (!bytes.empty()) {
        Block cut(bytes.first(bytes.size() - 1));
        description.read(cut.in, *description.create());
        require(cut.in.failed(), "a record without its last byte fails the reader");
    }
    checkValue(description, packet);
}

void fuzzReply(const MethodRow& row, View bytes) {
    Block block(bytes);
    const support::AllocationMeter meter;
    const auto result = row.decoder(block.in);
    checkMemory(meter, bytes.size());
    const auto consumed = block.consumed();
    const bool failed = block.in.failed();
    checkReader(block.in, bytes.size());
    require((result.reply != nullptr) == (row.reply != nullptr), "a reply is there when the method has one");
    if (failed)
        return;
    require(consumed >= 4, "a result has a return code");
    if (row.reply)
        checkRecord(*row.reply, *result.reply, bytes.subspan(4, consumed - 4));
    else
        require(consumed == 4, "a status is the return code alone");
}

void fuzzRequest(const MethodRow& row, View bytes) {
    if (!row.request) {
        OutputStream out;
        row.encoder(out, {});
        require(out.total() == 0, "a method without parameters writes nothing");
        return;
    }
    Block block(bytes);
    const support::AllocationMeter meter;
    const std::shared_ptr<TAVO::dto::request_packet> request = row.request->create();
    row.request->read(block.in, *request);
    checkMemory(meter, bytes.size());
    const auto consumed = block.consumed();
    const bool failed = block.in.failed();
    checkReader(block.in, bytes.size());
    OutputStream described;
    row.request->write(described, *request);
    OutputStream encoded;
    row.encoder(encoded, {request});
    require(written(described) == written(encoded), "the encoder writes what the description writes");
    if (!failed)
        checkRecord(*row.request, *request, bytes.first(consumed));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    fuzz::Input input(bytes, length);
    const auto& row = *fuzz::rowNumber(input.word()).row;
    const bool request = input.byte() % 2 != 0;
    const auto content = input.rest();
    if (request)
        fuzzRequest(row, content);
    else
        fuzzReply(row, content);
    return 0;
}
