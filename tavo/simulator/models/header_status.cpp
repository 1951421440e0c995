#include <tavo/simulator/models/header_status.h>

#include <utility>

namespace TAVO::simulator {

HeaderStatus::HeaderStatus(std::shared_ptr<Board> board, std::vector<std::string> hostSide,
                           std::vector<std::string> targetSide)
    : board_(std::move(board))
    , hostSide_(std::move(hostSide))
    , targetSide_(std::move(targetSide))
    , seenPowerOns_(board_->powerOnCount()) {}

std::vector<HeaderStatus::Header> HeaderStatus::headers() const {
    std::vector<Header> all;
    for (const auto& name : hostSide_)
        all.push_back({name, board_->powered(), board_->powerOnCount() != seenPowerOns_, error_});
    return all;
}

void HeaderStatus::clear() {
    seenPowerOns_ = board_->powerOnCount();
    error_ = false;
}

} // namespace TAVO::simulator
