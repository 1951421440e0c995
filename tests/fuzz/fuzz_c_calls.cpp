#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <tavo/c/open_device.h>
#include <tests/fuzz/simulated_device.h>
#include <tests/support/allocation_meter.h>

// Calls in JSON, as the C interface takes them. Input: how they are given (1 byte: a batch, with blocks in
// the reply, how many blocks in the call), the blocks, and the text. Whatever the text says, there is a reply
// in JSON or an error in words.

namespace {

using fuzz::require;
using Json = nlohmann::json;

/// An open device on a simulated appliance, which calls may change.
class Opened {
public:
    Opened()
        : appliance_(fuzz::topologyNumber(0))
        , peer_(appliance_)
        , handle_(std::make_unique<tavo_device>()) {
        const auto device = std::make_shared<fuzz::MemoryDevice>(peer_);
        fuzz::open(device);
        lockId_ = appliance_.lockId();
        for (const auto& object : fuzz::objectsOf(*device))
            handle_->objects.emplace(object->getFullName(), object);
        handle_->device = device;
    }

    tavo_device* handle() { return handle_.get(); }
    std::size_t received() const {
        return static_cast<const fuzz::MemoryDevice&>(*handle_->device).received();
    }
    bool isFresh() { return ++uses_ < 200 && appliance_.lockId() == lockId_; }

private:
    fuzz::MemoryAppliance appliance_;
    fuzz::AppliancePeer peer_;
    std::unique_ptr<tavo_device> handle_;
    std::uint32_t lockId_ = 0;
    unsigned uses_ = 0;
};

struct Outcome {
    tavo_status status;
    tavo_reply* reply;
};

void checkReply(const Outcome& outcome, bool isBatch, bool wantsBlocks) {
    std::size_t size = 0;
    const auto* text = tavo_reply_json(outcome.reply, &size);
    require(std::strlen(text) == size, "a reply has its length");
    const auto document = Json::parse(text, nullptr, false);
    require(!document.is_discarded(), "a reply is JSON", text);
    std::size_t count = 0;
    const auto* blocks = tavo_reply_blocks(outcome.reply, &count);
    require((blocks == nullptr) == (count == 0), "blocks are there or are not");
    require(wantsBlocks || count == 0, "blocks come only if they are wanted");
    for (std::size_t i = 0; i < count; ++i)
        require(blocks[i].data != nullptr || blocks[i].size == 0, "a block can be read");
    require(isBatch ? document.is_array() : document.is_object(), "a reply is what was asked for");
    for (const auto& answer : isBatch ? document : Json::array({document}))
        require(answer.is_null() || (answer.contains("code") && answer.contains("value")),
                "an answer has a code and a value", text);
}

void checkError(const Outcome& outcome) {
    const auto& error = *tavo_last_error();
    require(error.status == outcome.status, "the last error is that of the call");
    require(error.message != nullptr && *error.message != '\0', "an error is told in words");
    require(outcome.status != TAVO_ERROR_NETWORK && outcome.status != TAVO_ERROR_CLOSED,
            "the device stays open", error.message);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    static std::optional<Opened> opened;
    if (!opened || !opened->isFresh())
        opened.emplace();
    fuzz::Input input(bytes, length);
    const auto form = input.byte();
    const bool isBatch = (form & 1) != 0;
    const bool wantsBlocks = (form & 2) != 0;
    std::vector<tavo_bytes> blocks((form >> 2) % 4);
    for (auto& block : blocks) {
        const auto content = input.block();
        block = {content.data(), content.size()};
    }
    const auto text = fuzz::textOf(input.rest());

    const auto before = opened->received();
    const support::AllocationMeter memory;
    Outcome outcome{};
    outcome.status = (isBatch ? tavo_batch_json
                              : tavo_call_json)(opened->handle(), text.c_str(), blocks.data(), blocks.size(),
                                                wantsBlocks ? TAVO_REPLY_BLOCKS : 0, &outcome.reply);
    require(memory.largest() <= (std::size_t{1} << 20) + 8 * (length + opened->received() - before),
            "memory follows the bytes of call and reply");
    require(outcome.status != TAVO_OK || outcome.reply != nullptr, "what succeeds has a reply");
    if (outcome.reply != nullptr)
        checkReply(outcome, isBatch, wantsBlocks);
    if (outcome.status != TAVO_OK)
        checkError(outcome);
    tavo_reply_free(outcome.reply);
    return 0;
}
