#include <tavo/simulator/models/serial_port.h>

#include <algorithm>
#include <array>
#include <utility>

#include <tavo/simulator/return_codes.h>

namespace TAVO::simulator {

namespace {

constexpr std::array<std::int32_t, 13> standardRates = {300,   600,   1200,  1800,  2400,  4800,  9600,
                                                        14400, 19200, 28800, 38400, 57600, 115200};

bool isPossible(const SerialPort::Settings& settings) {
    return std::find(standardRates.begin(), standardRates.end(), settings.baud) != standardRates.end() &&
           settings.dataBits >= 5 && settings.dataBits <= 8 && settings.stopBits >= 1 &&
           settings.stopBits <= 2;
}

} // namespace

SerialPort::SerialPort(std::shared_ptr<SerialConsole> console)
    : console_(std::move(console)) {}

std::int32_t SerialPort::open(const Settings& settings) {
    if (!isPossible(settings))
        return return_code::badArgument;
    settings_ = settings;
    looped_.clear();
    console_->discardOutput();
    return return_code::done;
}

std::int32_t SerialPort::close() {
    if (!settings_)
        return return_code::notReady;
    settings_.reset();
    return return_code::done;
}

std::int32_t SerialPort::send(std::span<const std::uint8_t> data) {
    if (!settings_)
        return return_code::notReady;
    if (data.size() > largestSend)
        return return_code::badArgument;
    if (settings_->loopback) {
        looped_.append(data.begin(), data.end());
        looped_.erase(0, looped_.size() - std::min(looped_.size(), bufferSize));
    } else {
        for (const auto byte : data)
            console_->type(byte);
    }
    return return_code::done;
}

std::int32_t SerialPort::receive(std::int32_t count, std::vector<std::uint8_t>& data) {
    if (!settings_)
        return return_code::notReady;
    if (count < 0 || count > largestCount)
        return return_code::badArgument;
    const auto wanted = static_cast<std::size_t>(count);
    std::string taken;
    if (settings_->loopback) {
        taken = looped_.substr(0, wanted);
        looped_.erase(0, taken.size());
    } else {
        taken = console_->take(wanted);
    }
    data.assign(taken.begin(), taken.end());
    return return_code::done;
}

} // namespace TAVO::simulator
