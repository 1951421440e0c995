#include <tavo/cli/serial_serve/guarded_line.h>

#include <algorithm>
#include <exception>
#include <utility>

#include <fmt/format.h>

#include <tavo/cli/interrupt.h>
#include <tavo/cli/values/visible_text.h>
#include <tavo/toolkit/errors.h>

namespace TAVO::cli {

namespace {

using std::chrono::milliseconds;

/// The longest wait for the line before the port is closed, however slow the line and long the text.
constexpr milliseconds longestDrain(1000);
/// For what the port does between its buffer and the line.
constexpr milliseconds drainMargin(20);

} // namespace

GuardedLine::GuardedLine(Session& session, Output& output, std::shared_ptr<CommonModules::Com_v1_0> port,
                         const LineSettings& settings)
    : session_(session)
    , output_(output)
    , port_(std::move(port))
    , first_(settings)
    , settings_(settings)
    , guard_([&output](const std::exception& failure) {
        output.warn(fmt::format("the device fails, its port says nothing from now on: {}", failure.what()));
    }) {
    open(settings);
}

std::string GuardedLine::name() const { return visible(port_->getFullName()); }

void GuardedLine::open(const LineSettings& settings) {
    link_.emplace(session_, port_, settings.request());
    sentAt_ = {};
}

std::string GuardedLine::exchange(std::string_view bytes) {
    auto received = kept_.take();
    guard_.attempt([&] {
        received += link_->exchange(bytes);
        noteSent(bytes.size());
    });
    return received;
}

void GuardedLine::dropReceived() {
    kept_.take();
    guard_.attempt([&] { receiveAll(); });
}

std::string GuardedLine::receiveAll() {
    // A board may say more than that meanwhile; then it goes on saying it.
    constexpr int mostRounds = 16;
    std::string all;
    for (int round = 0; round < mostRounds; ++round) {
        const auto received = link_->exchange({});
        if (received.empty())
            break;
        all += received;
    }
    return all;
}

void GuardedLine::noteSent(std::size_t bytes) {
    if (bytes == 0)
        return;
    constexpr std::int64_t bitsOfByte = 12;
    const auto lasts = std::chrono::microseconds(static_cast<std::int64_t>(bytes) * bitsOfByte * 1'000'000 /
                                                 std::max(settings_.baud, 1));
    sentAt_ = std::max(sentAt_, Clock::now()) + lasts;
}

void GuardedLine::drain() const {
    if (!works() || sentAt_ == Clock::time_point())
        return;
    const auto left = sentAt_ + drainMargin - Clock::now();
    if (left > Clock::duration::zero())
        InterruptWatch::pause(std::min(std::chrono::ceil<milliseconds>(left), longestDrain));
}

void GuardedLine::leave() {
    drain();
    kept_.add(receiveAll());
    link_->close();
    link_.reset();
}

bool GuardedLine::set(const LineSettings& settings) {
    if (settings == settings_)
        return true;
    bool isSet = false;
    guard_.attempt([&] {
        leave();
        try {
            open(settings);
            settings_ = settings;
            isSet = true;
        } catch (const Failure& refused) {
            if (!refused.returned)
                throw;
            open(settings_);
        }
    });
    return isSet;
}

bool GuardedLine::sendBreak() {
    bool isSent = false;
    guard_.attempt([&] {
        leave();
        try {
            cli::sendBreak(session_, port_, settings_.request());
            isSent = true;
        } catch (const Failure& refused) {
            if (!refused.returned && refused.code != ExitCode::usage)
                throw;
            warn(refused.what());
        } catch (const toolkit::BadRequest& impossible) {
            warn(impossible.what());
        }
        open(settings_);
    });
    return isSent;
}

void GuardedLine::close() {
    if (works() && link_)
        link_->close();
    link_.reset();
}

} // namespace TAVO::cli
