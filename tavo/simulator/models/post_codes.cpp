#include <tavo/simulator/models/post_codes.h>

#include <array>
#include <utility>

namespace TAVO::simulator {

namespace {

constexpr std::uint8_t firmwarePort = 0x80;
constexpr std::uint64_t firstCodeDelay = 250'000;

// Security and pre-memory phase, memory training, early silicon, drivers, boot device selection.
constexpr std::array<std::uint8_t, 60> bootCodes = {
    0x01, 0x02, 0x03, 0x04, 0x06, 0x10, 0x11, 0x15, 0x19, 0x19, 0x1C, 0x23, 0x2B, 0x2C, 0x2D,
    0x2E, 0x2E, 0x2E, 0x2F, 0x31, 0x32, 0x33, 0x34, 0x36, 0x37, 0x38, 0x3B, 0x4F, 0x60, 0x61,
    0x62, 0x63, 0x63, 0x68, 0x69, 0x6A, 0x70, 0x71, 0x72, 0x78, 0x79, 0x90, 0x91, 0x92, 0x93,
    0x94, 0x94, 0x95, 0x96, 0x96, 0x97, 0x98, 0x99, 0x9A, 0x9B, 0x9C, 0xA0, 0xA2, 0xAD, PostCodes::bootEnd,
};

} // namespace

PostCodes::PostCodes(std::shared_ptr<Board> board, std::function<bool()> fromEmulatedRom,
                     std::size_t capacity)
    : BoardObserver(std::move(board))
    , fromEmulatedRom_(std::move(fromEmulatedRom))
    , capacity_(capacity) {
    PostCodes::boardChanged();
}

int PostCodes::last() {
    catchUp();
    return last_;
}

std::vector<PostCodes::Entry> PostCodes::entries() {
    catchUp();
    return {fifo_.begin(), fifo_.end()};
}

void PostCodes::clear() {
    catchUp();
    fifo_.clear();
}

void PostCodes::write(std::uint8_t code) {
    catchUp();
    if (const auto since = board().sincePowerOn())
        capture(code, *since);
}

bool PostCodes::overflow() {
    catchUp();
    return overflow_;
}

void PostCodes::clearOverflow() {
    catchUp();
    overflow_ = false;
}

void PostCodes::setEnabled(bool enabled) {
    catchUp();
    enabled_ = enabled;
}

void PostCodes::setOptions(const Options& options) {
    catchUp();
    options_ = options;
}

void PostCodes::catchUp() {
    board().settle();
    settle(board().now());
}

void PostCodes::settle(std::uint64_t time) {
    for (; nextStep_ < steps_.size() && bootTime_ + steps_[nextStep_].sinceBoot <= time; ++nextStep_)
        capture(steps_[nextStep_].code, bootTime_ + steps_[nextStep_].sinceBoot - powerOnTime_);
}

void PostCodes::boardChanged() {
    nextStep_ = 0;
    const auto boot = board().bootTime();
    if (!boot) {
        steps_.clear();
        last_ = -1;
        return;
    }
    steps_ = bootSteps(fromEmulatedRom_ && fromEmulatedRom_(), board().bootFoundClearedCmos());
    bootTime_ = *boot;
    if (std::exchange(powerOns_, board().powerOnCount()) == powerOns_)
        return;
    powerOnTime_ = bootTime_;
    last_ = -1;
    lastStored_ = -1;
    firstIsDue_ = true;
    if (options_.resetAtPowerOn)
        fifo_.clear();
}

void PostCodes::capture(std::uint8_t code, std::uint64_t sincePowerOn) {
    if (!enabled_ || options_.port != firmwarePort)
        return;
    last_ = code;
    if (options_.discardRepeated && code == lastStored_)
        return;
    lastStored_ = code;
    store({code, firmwarePort, std::exchange(firstIsDue_, false), sincePowerOn});
}

void PostCodes::store(const Entry& entry) {
    if (fifo_.size() == capacity_) {
        overflow_ = true;
        if (!options_.circular)
            return;
        fifo_.pop_front();
    }
    fifo_.push_back(entry);
}

std::vector<PostCodes::Step> PostCodes::bootSteps(bool fromEmulatedRom, bool cmosWasCleared) {
    constexpr auto training = 0x2E;
    constexpr std::uint64_t trainingWeight = 4;
    std::uint64_t weights = 0;
    const auto weightOf = [](std::uint8_t code) { return code == training ? trainingWeight : 1; };
    for (std::size_t i = 0; i + 1 < bootCodes.size(); ++i)
        weights += weightOf(bootCodes[i]);

    std::vector<Step> steps;
    std::uint64_t passed = 0;
    for (const auto code : bootCodes) {
        // cppcheck-suppress zerodiv ; there are several codes
        const auto time = firstCodeDelay + (Board::bootDuration - firstCodeDelay) * passed / weights;
        if (steps.empty() && fromEmulatedRom)
            steps.push_back({time, emulatedRom});
        steps.push_back({time, code});
        if (code == 0x06 && cmosWasCleared)
            steps.push_back({time, cmosCleared});
        passed += weightOf(code);
    }
    return steps;
}

} // namespace TAVO::simulator
