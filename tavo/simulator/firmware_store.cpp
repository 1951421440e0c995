#include <tavo/simulator/firmware_store.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include <tavo/simulator/call_context.h>

namespace TAVO::simulator {

namespace {

constexpr std::int64_t second = 1'000'000;

std::int64_t writingTime(std::size_t bytes) {
    return std::min(10 * second, second + static_cast<std::int64_t>(bytes) * second / (4 << 20));
}

/// The percentage at which the update of an image ends.
std::uint32_t reach(const std::vector<std::uint8_t>& image) {
    constexpr std::string_view badMark = "BAD";
    if (image.empty())
        return 0;
    const bool bad =
        image.size() >= badMark.size() && std::equal(badMark.begin(), badMark.end(), image.begin());
    return bad ? 50 : 100;
}

} // namespace

FirmwareStore::FirmwareStore()
    : firmware_{{"main", {{2, 4, 7}, {}, State::idle, 0}}, {"fpga", {{1, 12, 0}, {}, State::idle, 0}}} {}

void FirmwareStore::update(const std::string& name, std::vector<std::uint8_t> image, std::int64_t now) {
    at(name, now);
    if (running_.contains(name))
        throw Refusal(return_code::busy);
    const auto end = now + writingTime(image.size());
    running_.emplace(name, Update{std::move(image), now, end});
    progress(now);
}

const FirmwareStore::Firmware& FirmwareStore::at(const std::string& name, std::int64_t now) {
    progress(now);
    const auto found = firmware_.find(name);
    if (found == firmware_.end())
        throw DeviceFault(device_error::configuration, "There is no firmware '" + name + "'");
    return found->second;
}

const std::map<std::string, FirmwareStore::Firmware>& FirmwareStore::all(std::int64_t now) {
    progress(now);
    return firmware_;
}

void FirmwareStore::progress(std::int64_t now) {
    for (auto entry = running_.begin(); entry != running_.end();) {
        auto& [name, update] = *entry;
        auto& firmware = firmware_.at(name);
        firmware.state = State::writing;
        firmware.percent = static_cast<std::uint32_t>(
            std::clamp<std::int64_t>(100 * (now - update.begin) / (update.end - update.begin), 0, 100));
        if (const auto end = reach(update.image); end < 100 && firmware.percent >= end) {
            firmware.state = State::failed;
            firmware.percent = end;
        } else if (firmware.percent == 100) {
            firmware.state = State::done;
            firmware.image = std::move(update.image);
            ++firmware.version.bugfix;
        }
        entry = firmware.state == State::writing ? std::next(entry) : running_.erase(entry);
    }
}

} // namespace TAVO::simulator
