#pragma once

#include <cstdint>

#include <tavo/client/commonmodules/com.h>

namespace TAVO::cli {

enum class Parity { none, odd, even };

/// What a serial port is opened with.
struct LineSettings {
    std::int32_t baud = 115200;
    std::int32_t dataBits = 8;
    Parity parity = Parity::none;
    std::int32_t stopBits = 1;
    bool rtsCts = false;
    bool dtrDsr = false;
    bool xonXoff = false;
    /// Sent bytes come back.
    bool loopback = false;
    bool operator==(const LineSettings&) const = default;

    dto::com::OpenRequest request() const {
        dto::com::OpenRequest request;
        request.value1 = baud;
        request.value2 = dataBits;
        request.flag1 = parity != Parity::none;
        request.flag2 = parity == Parity::even;
        request.value3 = stopBits;
        request.flag3 = rtsCts;
        request.flag4 = dtrDsr;
        request.flag5 = xonXoff;
        request.flag6 = loopback;
        return request;
    }
};

} // namespace TAVO::cli
