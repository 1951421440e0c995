#include <tavo/toolkit/i2c.h>

#include <cstddef>

#include <fmt/format.h>

#include <tavo/toolkit/errors.h>

namespace TAVO::toolkit {

std::vector<std::uint32_t> acknowledgingAddresses(Access& access, const HWDebug::I2c_v1_0& bus,
                                                  std::uint32_t first, std::uint32_t last) {
    if (last > lastAddress)
        throw BadRequest(fmt::format("0x{:02x} is no address: the last is 0x{:02x}", last, lastAddress));
    if (first > last)
        throw BadRequest("the first address is greater than the last");
    Methods probes;
    for (auto address = first; address <= last; ++address)
        probes.push_back(bus.getReadMethod(static_cast<int>(address), true, true, 1));
    access.run(probes);
    std::vector<std::uint32_t> found;
    for (std::size_t i = 0; i < probes.size(); ++i) {
        if (probes[i]->returnCode() == notAcknowledgedCode)
            continue;
        access.insist(*probes[i]);
        found.push_back(first + static_cast<std::uint32_t>(i));
    }
    return found;
}

} // namespace TAVO::toolkit
