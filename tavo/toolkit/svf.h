#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tavo/jtag/svf/player.h>
#include <tavo/toolkit/borrowed_port.h>

namespace TAVO::toolkit {

namespace svf = jtag::svf;

/// What playing a file takes, as far as the file tells: where no device does, TCK has 1 MHz until the file
/// sets it.
/// @throws svf::SvfError for a file that cannot be played; what `options.checkpoint` throws.
svf::Totals measureSvf(std::string_view text, const std::string& file, const svf::PlanOptions& options);

/// Plays a file at a "jtag" object of either version, which is given back as it was found.
class SvfPlay {
public:
    struct Hooks {
        /// Is told how many bytes of the text are behind.
        std::function<void(std::size_t)> showProgress = [](std::size_t) {};
        /// Is told why the object could not be given back as it was, where a failure was on its way already.
        std::function<void(const std::exception&)> warn = [](const std::exception&) {};
    };

    /// Takes the port over: asks the device. Have measureSvf() accept the file first.
    /// @param text and `access` must outlive this.
    SvfPlay(Access& access, std::shared_ptr<const Object_v1_0> jtag, std::string_view text, std::string file,
            svf::PlanOptions options, Hooks hooks);

    /// @throws svf::Mismatch, at the end of the batch; what the access throws, and place() then tells where;
    /// what `showProgress` throws.
    void run();

    const svf::Totals& totals() const { return player_->totals(); }
    std::size_t exchanges() const { return port_.exchanges(); }
    /// TCK in Hz, as it was at the end.
    std::int32_t frequency() const { return frequency_; }
    std::chrono::duration<double> time() const { return time_; }
    const std::vector<svf::Player::OtherFrequency>& otherFrequencies() const {
        return player_->otherFrequencies();
    }
    /// The lines of the statements that are played: "FILE:3-7". Empty before, and when all have been played.
    std::string place() const { return player_ && !hasPlayed_ ? player_->place() : std::string(); }

private:
    std::int32_t setFrequency(jtag::Port& port, std::int32_t hertz);

    Access& access_;
    std::string_view text_;
    std::string file_;
    svf::PlanOptions options_;
    Hooks hooks_;
    BorrowedPort port_;
    std::optional<svf::Player> player_;
    bool hasPlayed_ = false;
    std::int32_t frequency_ = 0;
    std::chrono::duration<double> time_{0};
};

} // namespace TAVO::toolkit
