#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/simulator/export.h>
#include <tavo/simulator/models/board.h>

namespace TAVO::simulator {

/// The debug headers of one module: the headers on the appliance, and the headers on the board that its cable
/// connects.
class TAVO_SIMULATOR_API HeaderStatus {
public:
    struct Header {
        std::string name;
        /// The connected board has power.
        bool connected = false;
        /// The board has been switched on since the last clear().
        bool changed = false;
        bool error = false;
        bool operator==(const Header&) const = default;
    };

    HeaderStatus(std::shared_ptr<Board> board, std::vector<std::string> hostSide,
                 std::vector<std::string> targetSide);

    /// One per header on the appliance.
    std::vector<Header> headers() const;
    const std::vector<std::string>& hostSide() const noexcept { return hostSide_; }
    const std::vector<std::string>& targetSide() const noexcept { return targetSide_; }
    /// Clears the changed and error flags.
    void clear();
    /// For tests: sets the error flag of all headers until clear().
    void setError() noexcept { error_ = true; }

private:
    std::shared_ptr<Board> board_;
    std::vector<std::string> hostSide_;
    std::vector<std::string> targetSide_;
    std::uint32_t seenPowerOns_ = 0;
    bool error_ = false;
};

} // namespace TAVO::simulator
