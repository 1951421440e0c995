#include <tavo/client/transcode/block_receiver.h>

namespace TAVO {

namespace {

thread_local BlockReceiver* latest = nullptr;

} // namespace

BlockReceiver::BlockReceiver() noexcept
    : former_(latest) {
    latest = this;
}

BlockReceiver::~BlockReceiver() { latest = former_; }

BlockReceiver* BlockReceiver::current() noexcept { return latest; }

} // namespace TAVO
