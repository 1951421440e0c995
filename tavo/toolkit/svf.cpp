#include <tavo/toolkit/svf.h>

#include <utility>

namespace TAVO::toolkit {

namespace {

/// TCK for the waits of a file that sets no frequency, where no device tells.
constexpr std::int32_t assumedFrequency = 1'000'000;

} // namespace

svf::Totals measureSvf(std::string_view text, const std::string& file, const svf::PlanOptions& options) {
    return svf::measure(text, file, options, assumedFrequency);
}

SvfPlay::SvfPlay(Access& access, std::shared_ptr<const Object_v1_0> jtag, std::string_view text,
                 std::string file, svf::PlanOptions options, Hooks hooks)
    : access_(access)
    , text_(text)
    , file_(std::move(file))
    , options_(std::move(options))
    , hooks_(std::move(hooks))
    , port_(access, std::move(jtag), hooks_.warn) {}

/// A FREQUENCY is the most that TCK may have: where the device has no such frequency, a lower one that is set
/// will do.
std::int32_t SvfPlay::setFrequency(jtag::Port& port, std::int32_t hertz) {
    try {
        return port.setFrequency(hertz);
    } catch (const std::exception& failure) {
        if (!access_.isRefusal(failure) || hertz < port.frequency())
            throw;
        return port.frequency();
    }
}

void SvfPlay::run() {
    const auto start = std::chrono::steady_clock::now();
    port_.use([&](jtag::Port& port) {
        player_.emplace(text_, file_, options_, port,
                        svf::Player::Hooks{hooks_.showProgress,
                                           [&](std::int32_t hertz) { return setFrequency(port, hertz); }});
        player_->play();
        hasPlayed_ = true;
        frequency_ = port.frequency();
    });
    time_ = std::chrono::steady_clock::now() - start;
}

} // namespace TAVO::toolkit
