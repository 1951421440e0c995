#include <tavo/client/transcode/block_receiver.h>

namespace TAVO {

namespace {

thread_local BlockReceiver* latest = nullptr;

} // namespace

BlockReceiver::BlockReceiver() noexcept
    : former_(latest) {
    latest = this;
}

BlockReceiver::~BlockReceiver() {
    auto* place = &latest;
    while (*place && *place != this)
        place = &(*place)->former_;
    if (*place)
        *place = former_;
}

BlockReceiver* BlockReceiver::current() noexcept { return latest; }

} // namespace TAVO
