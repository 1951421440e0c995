#include <tavo/simulator/models/board.h>

#include <algorithm>
#include <utility>

namespace TAVO::simulator {

Board::Board(Clock now)
    : now_(std::move(now)) {}

std::uint64_t Board::now() {
    latest_ = std::max(latest_, now_());
    return latest_;
}

void Board::setPower(bool on) {
    settle();
    pulseEnd_.reset();
    if (on != powerOnTime_.has_value())
        switchPower(on, now());
}

void Board::pulsePower(bool on, std::uint64_t duration) {
    setPower(on);
    pulseEnd_ = now() + duration;
}

bool Board::powered() {
    settle();
    return powerOnTime_.has_value();
}

bool Board::powerGood() {
    const auto elapsed = sincePowerOn();
    return elapsed && *elapsed >= powerGoodDelay;
}

bool Board::inReset() {
    const auto elapsed = sinceBoot();
    return !elapsed || *elapsed < resetDelay;
}

std::optional<std::uint64_t> Board::sincePowerOn() {
    settle();
    if (!powerOnTime_)
        return std::nullopt;
    return now() - *powerOnTime_;
}

std::optional<std::uint64_t> Board::sinceBoot() {
    settle();
    if (!powerOnTime_)
        return std::nullopt;
    return now() - bootTime_;
}

std::optional<std::uint64_t> Board::bootTime() {
    settle();
    if (!powerOnTime_)
        return std::nullopt;
    return bootTime_;
}

bool Board::booted() {
    const auto elapsed = sinceBoot();
    return elapsed && *elapsed >= bootDuration;
}

std::uint32_t Board::powerOnCount() {
    settle();
    return powerOnCount_;
}

std::uint32_t Board::bootCount() {
    settle();
    return bootCount_;
}

void Board::reboot() {
    settle();
    if (!powerOnTime_)
        return;
    const auto time = now();
    bringObserversTo(time);
    beginBoot(time);
    tellObservers();
}

void Board::clearCmos() {
    settle();
    ++cmosClearCount_;
    cmosCleared_ = true;
}

std::uint32_t Board::cmosClearCount() const noexcept { return cmosClearCount_; }

bool Board::bootFoundClearedCmos() {
    settle();
    return bootFoundClearedCmos_;
}

void Board::settle() {
    if (!pulseEnd_ || now() < *pulseEnd_)
        return;
    const auto end = *pulseEnd_;
    pulseEnd_.reset();
    switchPower(!powerOnTime_, end);
}

void Board::switchPower(bool on, std::uint64_t time) {
    bringObserversTo(time);
    if (on) {
        powerOnTime_ = time;
        ++powerOnCount_;
        beginBoot(time);
    } else {
        powerOnTime_.reset();
        bootFoundClearedCmos_ = false;
    }
    tellObservers();
}

void Board::beginBoot(std::uint64_t time) {
    bootTime_ = time;
    ++bootCount_;
    bootFoundClearedCmos_ = std::exchange(cmosCleared_, false);
}

void Board::bringObserversTo(std::uint64_t time) {
    for (auto* observer : observers_)
        observer->settle(time);
}

void Board::tellObservers() {
    for (auto* observer : observers_)
        observer->boardChanged();
}

BoardObserver::BoardObserver(std::shared_ptr<Board> board)
    : board_(std::move(board)) {
    board_->observers_.push_back(this);
}

BoardObserver::~BoardObserver() { std::erase(board_->observers_, this); }

} // namespace TAVO::simulator
