#include <tavo/cli/rom_serve/flash_chip.h>

#include <algorithm>

#include <fmt/format.h>

#include <tavo/cli/failure.h>

namespace TAVO::cli {

namespace {

constexpr std::uint32_t kibi = 1024;
constexpr std::uint32_t mebi = 1024 * kibi;
/// What the three bytes of an address reach.
constexpr std::uint32_t largestChip = 16 * mebi;

std::string knownNames() { return fmt::format("{}", fmt::join(flashChipNames(), ", ")); }

} // namespace

const std::vector<FlashChip>& flashChips() {
    static const std::vector<FlashChip> all{
        {"GD25Q40", 512 * kibi, {0xC8, 0x40, 0x13}, 0x12},
        {"MX25U8032E", mebi, {0xC2, 0x25, 0x34}, 0x34},
        {"MX25U1635E", 2 * mebi, {0xC2, 0x25, 0x35}, 0x35},
        {"MX25U3235F", 4 * mebi, {0xC2, 0x25, 0x36}, 0x36},
        {"MX25U6435F", 8 * mebi, {0xC2, 0x25, 0x37}, 0x37},
        {"MX25U12835F", largestChip, {0xC2, 0x25, 0x38}, 0x38},
        {"GD25Q80", mebi, {0xC8, 0x40, 0x14}, 0x13},
        {"GD25Q16", 2 * mebi, {0xC8, 0x40, 0x15}, 0x14},
        {"GD25Q32", 4 * mebi, {0xC8, 0x40, 0x16}, 0x15},
        {"GD25Q64", 8 * mebi, {0xC8, 0x40, 0x17}, 0x16},
    };
    return all;
}

std::vector<std::string> flashChipNames() {
    std::vector<std::string> names;
    for (const auto& chip : flashChips())
        names.push_back(chip.name);
    return names;
}

const FlashChip& chooseFlashChip(std::uint32_t memory, const std::string& name) {
    const auto& chips = flashChips();
    const auto found = std::find_if(chips.begin(), chips.end(), [&](const FlashChip& chip) {
        return name.empty() ? chip.size == memory : chip.name == name;
    });
    if (found == chips.end() && !name.empty())
        throw Failure(ExitCode::usage,
                      fmt::format("there is no flash chip '{}', only {}", name, knownNames()));
    if (found == chips.end() && memory > largestChip)
        throw Failure(ExitCode::usage,
                      fmt::format("the ROM has {} bytes, more than the {} that a programmer can address; "
                                  "--chip chooses a chip that shows the first of them",
                                  memory, largestChip));
    if (found == chips.end())
        throw Failure(ExitCode::usage,
                      fmt::format("no flash chip has the ROM's {} bytes; --chip chooses a smaller one of {}",
                                  memory, knownNames()));
    if (found->size > memory)
        throw Failure(ExitCode::usage,
                      fmt::format("the {} has {} bytes, more than the ROM's {}", name, found->size, memory));
    return *found;
}

} // namespace TAVO::cli
