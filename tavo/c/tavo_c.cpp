#include <tavo/c/tavo_c.h>

#include <memory>
#include <mutex>

#include <tavo/c/calls.h>
#include <tavo/c/last_error.h>
#include <tavo/c/open_device.h>
#include <tavo/c/refusal.h>
#include <tavo/c/reply.h>
#include <tavo/c/tree.h>

using namespace TAVO::c;

namespace {

/// Runs an action in the caller's turn.
template <class Action>
tavo_status inTurn(tavo_device* device, Action action) noexcept {
    return guarded([&] {
        require(device, "device");
        const std::lock_guard turn(device->turn);
        action(*device);
    });
}

/// The same for an action that makes a reply, also where it fails.
template <class Action>
tavo_status replying(tavo_device* device, tavo_reply** reply, Action action) noexcept {
    std::unique_ptr<tavo_reply> made;
    const auto status = inTurn(device, [&](tavo_device& opened) {
        require(reply, "reply");
        action(opened, made);
    });
    if (reply)
        *reply = made.release();
    return status;
}

} // namespace

const tavo_error* tavo_last_error() noexcept { return &lastError(); }

const char* tavo_version() noexcept {
    static const auto version = TAVO::ClientLibraryVersion.substr(0, TAVO::ClientLibraryVersion.rfind('.'));
    return version.c_str();
}

tavo_device* tavo_new() noexcept {
    tavo_device* device = nullptr;
    guarded([&] { device = std::make_unique<tavo_device>().release(); });
    return device;
}

tavo_status tavo_open(tavo_device* device, const tavo_options* options) noexcept {
    return inTurn(device, [&](tavo_device& closed) {
        require(options, "options");
        openDevice(closed, *options);
    });
}

void tavo_close(tavo_device* device) noexcept {
    if (!device)
        return;
    const std::lock_guard turn(device->turn);
    closeDevice(*device);
}

void tavo_free(tavo_device* device) noexcept {
    tavo_close(device);
    delete device;
}

void tavo_interrupt(tavo_device* device) noexcept {
    if (device)
        device->interrupter->interrupt();
}

tavo_status tavo_set_timeout(tavo_device* device, uint32_t timeout_ms) noexcept {
    return inTurn(device,
                  [&](tavo_device& opened) { requireOpen(opened).setTimeLimit(timeLimitOf(timeout_ms)); });
}

tavo_status tavo_call_json(tavo_device* device, const char* text, const tavo_bytes* blocks,
                           size_t block_count, uint32_t flags, tavo_reply** reply) noexcept {
    return replying(device, reply, [&](tavo_device& opened, std::unique_ptr<tavo_reply>& made) {
        made = call(opened, {text, blocks, block_count, flags});
    });
}

tavo_status tavo_batch_json(tavo_device* device, const char* calls, const tavo_bytes* blocks,
                            size_t block_count, uint32_t flags, tavo_reply** reply) noexcept {
    return replying(device, reply, [&](tavo_device& opened, std::unique_ptr<tavo_reply>& made) {
        batch(opened, {calls, blocks, block_count, flags}, made);
    });
}

tavo_status tavo_tree_json(tavo_device* device, tavo_reply** reply) noexcept {
    return replying(device, reply,
                    [&](tavo_device& opened, std::unique_ptr<tavo_reply>& made) { made = tree(opened); });
}

const char* tavo_reply_json(const tavo_reply* reply, size_t* size) noexcept {
    if (size)
        *size = reply ? reply->json.size() : 0;
    return reply ? reply->json.c_str() : nullptr;
}

const tavo_bytes* tavo_reply_blocks(const tavo_reply* reply, size_t* count) noexcept {
    if (count)
        *count = reply ? reply->blocks.size() : 0;
    return reply && !reply->blocks.empty() ? reply->blocks.data() : nullptr;
}

void tavo_reply_free(tavo_reply* reply) noexcept { delete reply; }
