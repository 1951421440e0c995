#pragma once

#include <vector>

#include <tavo/client.h>
#include <tavo/toolkit/access.h>

namespace TAVO::toolkit {

/// Takes the codes that a receiver holds from it, the oldest first. One exchange.
///
/// The device can give all codes and drop all codes, but cannot do both at once. A code that comes after it
/// has given them and before it drops them is lost; both are calls of one exchange, so this is the time in
/// which the device goes from one call to the next. Codes that come while its FIFO is full are lost as well,
/// so take them often enough. How large the FIFO is, "fifoSizeGet" tells.
std::vector<dto::lpcPostCode::FifoEntry> takeCodes(Access& access, const HWDebug::LpcPostCode_v1_0& receiver);

} // namespace TAVO::toolkit
