#include <tavo/toolkit/serial_link.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/toolkit/errors.h>

namespace TAVO::toolkit {

namespace {

namespace com_v1_0 = CommonModules::TAVOXTranscode::com_v1_0;

constexpr int receivedAtOnce = 16 * 1024;

/// The highest usual rate at which a byte of zeros lasts longer than any character at `rate`.
int rateOfBreak(int rate) {
    constexpr std::array rates{57600, 38400, 28800, 19200, 14400, 9600, 4800, 2400, 1200, 600, 300};
    const auto slow = std::find_if(rates.begin(), rates.end(), [&](int each) { return each <= rate / 2; });
    if (slow == rates.end())
        throw BadRequest(fmt::format("the port cannot send a break at {} baud: there is no "
                                     "slower rate to make it with",
                                     rate));
    return *slow;
}

} // namespace

SerialLink::SerialLink(Access& access, std::shared_ptr<CommonModules::Com_v1_0> port,
                       const dto::com::OpenRequest& settings)
    : access_(access)
    , port_(std::move(port)) {
    access_.throwIfStopped();
    open_ = true;
    try {
        access_.execute(*port_, com_v1_0::open, settings);
    } catch (const std::exception& failure) {
        // The device may have opened the port all the same.
        if (!access_.isRefusal(failure))
            closeQuietly();
        throw;
    }
}

SerialLink::~SerialLink() { closeQuietly(); }

void SerialLink::closeQuietly() noexcept {
    try {
        close();
    } catch (const std::exception&) {
    }
}

std::string SerialLink::exchange(std::string_view bytes) {
    // The proxy's own operations convert the bytes, so call the methods directly.
    const auto receive = port_->make(com_v1_0::recv, receivedAtOnce);
    Methods calls;
    if (!bytes.empty())
        calls.push_back(port_->make(com_v1_0::send, std::vector<std::uint8_t>(bytes.begin(), bytes.end())));
    calls.push_back(receive);
    access_.runAll(calls);
    const auto data = receive->take().data;
    return {data.begin(), data.end()};
}

void SerialLink::close() {
    if (std::exchange(open_, false))
        access_.releaseAll({port_->getCloseMethod()});
}

void sendBreak(Access& access, const std::shared_ptr<CommonModules::Com_v1_0>& port,
               dto::com::OpenRequest settings) {
    constexpr int bitsOfBreak = 10;
    constexpr std::chrono::milliseconds margin(20);
    settings.value1 = rateOfBreak(settings.value1);
    SerialLink link(access, port, settings);
    link.exchange(std::string_view("\0", 1));
    // Opening the port anew might drop what has not been sent.
    access.pause(margin + std::chrono::milliseconds(1000 * bitsOfBreak / settings.value1));
    link.close();
}

} // namespace TAVO::toolkit
