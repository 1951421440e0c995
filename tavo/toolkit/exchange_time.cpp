#include <tavo/toolkit/exchange_time.h>

#include <algorithm>
#include <cstdint>

namespace TAVO::toolkit {

namespace {

using std::chrono::microseconds;

constexpr microseconds perNetworkByte(15);      // 64 KiB a second
constexpr microseconds perBusByte(1000);        // I2C at 10 kHz, or a serial port at 9600 baud
constexpr microseconds perScannedBit(100);      // 10 kHz
constexpr microseconds perStoredPage(20000);    // of an EEPROM
constexpr std::chrono::minutes perFirmware(10); // to erase and write a flash memory

template <class Number>
Number notNegative(Number number) {
    return std::max(number, Number{0});
}

std::int64_t sizeOf(const std::vector<std::uint8_t>& data) { return static_cast<std::int64_t>(data.size()); }

microseconds timeOf(const dto::system::uSleepRequest& request) { return microseconds(request.microseconds); }
microseconds timeOf(const dto::system::uWaitRequest& request) { return microseconds(request.microseconds); }
microseconds timeOf(const dto::Jtag::SleepRequest& request) { return microseconds(request.duration); }
microseconds timeOf(const dto::hdt::ioDbrdyWaitRequest& request) { return microseconds(request.timeout); }
microseconds timeOf(const dto::relay::ToggleRequest& request) {
    return std::chrono::milliseconds(request.value);
}
microseconds timeOf(const dto::cmosRelay::CmosClear& request) {
    return std::chrono::milliseconds(request.value);
}
microseconds timeOf(const dto::system::FirmwareUpdateRequest& request) {
    return perFirmware + perNetworkByte * sizeOf(request.image);
}
microseconds timeOf(const dto::lpcRomEmulation::SramGetRequest& request) {
    return perNetworkByte * std::int64_t{request.length};
}
microseconds timeOf(const dto::lpcRomEmulation::SramSetRequest& request) {
    return perNetworkByte * sizeOf(request.data);
}
microseconds timeOf(const dto::i2c::TransferRequest& request) {
    return perBusByte * (sizeOf(request.data) + notNegative(request.count));
}
microseconds timeOf(const dto::i2c::ReadRequest& request) { return perBusByte * std::int64_t{request.count}; }
microseconds timeOf(const dto::i2c::WriteRequest& request) {
    return perStoredPage + perBusByte * sizeOf(request.data);
}
microseconds timeOf(const dto::Jtag::ShiftRequest& request) {
    return perScannedBit * std::int64_t{request.bits};
}
microseconds timeOf(const dto::gpuScan::ScanRequest& request) {
    return perScannedBit * std::int64_t{request.count};
}
microseconds timeOf(const dto::com::SendRequest& request) { return perBusByte * sizeOf(request.data); }

template <class... Requests>
microseconds timeOfAny(const dto::request_packet& packet) {
    microseconds time(0);
    const auto look = [&time](const auto* request) {
        if (request != nullptr)
            time = notNegative(timeOf(*request));
    };
    (look(dynamic_cast<const Requests*>(&packet)), ...);
    return time;
}

microseconds timeOf(const Method& method) {
    const auto& params = method.getParams();
    if (!params.request)
        return microseconds(0);
    using namespace dto;
    return timeOfAny<system::uSleepRequest, system::uWaitRequest, system::FirmwareUpdateRequest,
                     Jtag::SleepRequest, Jtag::ShiftRequest, hdt::ioDbrdyWaitRequest, relay::ToggleRequest,
                     cmosRelay::CmosClear, lpcRomEmulation::SramGetRequest, lpcRomEmulation::SramSetRequest,
                     i2c::TransferRequest, i2c::ReadRequest, i2c::WriteRequest, gpuScan::ScanRequest,
                     com::SendRequest>(*params.request);
}

} // namespace

std::chrono::milliseconds busyTime(const std::vector<std::shared_ptr<Method>>& methods) {
    microseconds time(0);
    for (const auto& method : methods)
        time += timeOf(*method);
    // What is answered at once, if not within the millisecond, needs none.
    constexpr microseconds tiny(100'000);
    return time < tiny ? std::chrono::milliseconds(0) : std::chrono::ceil<std::chrono::milliseconds>(time);
}

} // namespace TAVO::toolkit
