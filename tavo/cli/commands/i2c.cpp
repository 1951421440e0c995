#include <tavo/cli/commands/i2c.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/commands/commands.h>
#include <tavo/cli/consent.h>
#include <tavo/cli/i2c_transfers.h>
#include <tavo/cli/output.h>
#include <tavo/cli/user_input.h>
#include <tavo/cli/values/i2c_grid.h>
#include <tavo/toolkit/i2c.h>

namespace TAVO::cli {

namespace {

using HWDebug::I2c_v1_0;

struct DetectOptions : ObjectOptions {
    std::uint32_t first = toolkit::firstUsualAddress;
    std::uint32_t last = toolkit::lastUsualAddress;

    void describe(OptionList& list) {
        list.add("first", first, "First address; default 0x08",
                 {.limits = between(0x00, 0x7f), .needs = {"last"}});
        list.add("last", last, "Last address; default 0x77", {.limits = between(0x00, 0x7f)});
    }
};

void detect(Session& session, Output& output, const DetectOptions& options) {
    const NumberRange range{options.first, options.last};
    if (range.first > range.last)
        throw Failure(ExitCode::usage, "the first address is greater than the last");
    const auto bus = chooseBus(session, options);
    const auto found = acknowledgingAddresses(session, *bus, range);
    output.show(
        {{"object", bus->getFullName()}, {"first", range.first}, {"last", range.last}, {"found", found}},
        [&](TextWriter& text) { text.write(detectGrid(range, found)); });
}

/// A device on a bus.
struct TargetOptions : ObjectOptions {
    std::uint32_t address = 0;
    bool wide = false;

    void describe(OptionList& list) {
        list.add("address", address, "7-bit address of the device, such as 0x50",
                 {.required = true, .limits = between(0x00, 0x7f)});
        list.add("--word-address", wide, "The device has 16-bit register numbers");
    }
    std::uint32_t highestRegister() const { return wide ? 0xffff : 0xff; }
};

void requireRegisters(const TargetOptions& options, std::uint32_t first, std::size_t count) {
    if (first + count > options.highestRegister() + std::size_t{1})
        throw Failure(ExitCode::usage,
                      fmt::format("{} registers from 0x{:02x} on exceed 0x{:02x}{}", count, first,
                                  options.highestRegister(),
                                  options.wide ? "" : " (--word-address for 16-bit numbers)"));
}

/// The values read or written, one number per register, or null for one that was not acknowledged.
template <class Values>
void write(JsonWriter& json, const I2c_v1_0& bus, const TargetOptions& options,
           std::optional<std::uint32_t> first, const Values& values, std::optional<bool> verified = {}) {
    json.object([&] {
        json.key("address").number(options.address);
        if (first)
            json.key("first").number(*first);
        json.key("object").text(bus.getFullName());
        json.key("values").array([&] {
            for (const std::optional<std::uint32_t> value : values) {
                if (value)
                    json.number(*value);
                else
                    json.null();
            }
        });
        if (verified)
            json.key("verified").flag(*verified);
    });
}

struct DumpOptions : TargetOptions {
    std::string range;

    void describe(OptionList& list) {
        TargetOptions::describe(list);
        list.add("--range", range, "Registers A-B; default: all");
    }
};

void dump(Session& session, Output& output, const DumpOptions& options) {
    const auto highest = options.highestRegister();
    const auto range = options.range.empty() ? NumberRange{0, highest}
                                             : parseInput([&] { return parseRange(options.range, highest); });
    const auto bus = chooseBus(session, options);
    const auto target = I2cTarget{*bus, options.address, options.wide};
    const auto bytes = options.wide ? readInBlocks(session, target, range) : readEach(session, target, range);
    const auto missing = std::count(bytes.begin(), bytes.end(), std::nullopt);
    if (missing == static_cast<std::ptrdiff_t>(bytes.size()))
        throw notAcknowledged(target);

    output.show([&](JsonWriter& json) { write(json, *bus, options, range.first, bytes); },
                [&](TextWriter& text) { text.write(dumpGrid(range.first, bytes, options.wide)); });
    if (missing != 0)
        throw Failure(ExitCode::refused,
                      fmt::format("{} of {} registers were not acknowledged", missing, bytes.size()));
}

const NumberLimits registerNumbers = between(0x0000, 0xffff);

constexpr const char* wordHelp = "Values have 16 bits, the low byte first, as SMBus has them";

/// The registers of 16 bits that these bytes are, or of 8.
std::vector<std::uint32_t> valuesOf(const std::vector<std::uint8_t>& bytes, bool word) {
    if (!word)
        return {bytes.begin(), bytes.end()};
    std::vector<std::uint32_t> values;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        values.push_back(bytes[i] | std::uint32_t{bytes[i + 1]} << 8);
    return values;
}

struct GetOptions : TargetOptions {
    std::optional<std::uint32_t> first;
    std::uint32_t count = 1;
    bool word = false;

    void describe(OptionList& list) {
        TargetOptions::describe(list);
        list.add("register", first, "First register", {.limits = registerNumbers});
        list.add("count", count, "Number of registers; default 1", {.limits = between(1, 0x10000)});
        list.add("--word", word, wordHelp);
    }
};

void get(Session& session, Output& output, const GetOptions& options) {
    if (options.first)
        requireRegisters(options, *options.first, options.count);
    const auto bus = chooseBus(session, options);
    const I2cTarget target{*bus, options.address, options.wide};
    const auto values = valuesOf(
        readRun(session, target, options.first, options.count * (options.word ? 2 : 1)), options.word);
    output.show([&](JsonWriter& json) { write(json, *bus, options, options.first, values); },
                [&](TextWriter& text) {
                    const char* separator = "";
                    for (const auto value : values)
                        text.print("{}0x{:0{}x}", std::exchange(separator, " "), value, options.word ? 4 : 2);
                    text.write(values.empty() ? "0x\n" : "\n");
                });
}

struct SetOptions : TargetOptions {
    std::uint32_t first = 0;
    std::vector<std::uint32_t> values;
    std::uint32_t page = 0;
    bool word = false;
    bool verify = false;
    bool yes = false;

    void describe(OptionList& list) {
        TargetOptions::describe(list);
        list.add("register", first, "First register", {.required = true, .limits = registerNumbers});
        list.add("values", values,
                 "One byte per register; without any, only the register's number is written",
                 {.limits = between(0x0000, 0xffff)});
        list.add("--word", word, wordHelp);
        list.add("--page", page,
                 "Registers the device can store at a time; default 8, or 32 with --word-address",
                 {.limits = between(1, 0x10000)});
        list.add("--verify", verify, "Read the registers back and compare");
        list.add("-y,--yes", yes, "Do not ask for confirmation");
    }
};

std::uint32_t pageSize(const SetOptions& options) {
    // The smallest page of such devices; larger pages are multiples of it.
    const std::uint32_t smallest = options.wide ? 32 : 8;
    return options.page != 0 ? options.page : smallest;
}

std::vector<std::uint8_t> bytesOf(const SetOptions& options) {
    std::vector<std::uint8_t> bytes;
    for (const auto value : options.values) {
        if (value > 0xff && !options.word)
            throw Failure(ExitCode::usage,
                          fmt::format("the value 0x{:x} exceeds 0xff (--word for 16-bit values)", value));
        bytes.push_back(static_cast<std::uint8_t>(value));
        if (options.word)
            bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    }
    return bytes;
}

std::string questionOf(const SetOptions& options, std::size_t bytes) {
    if (options.values.empty())
        return fmt::format("Write only the register number 0x{:02x} to I2C address 0x{:02x}?", options.first,
                           options.address);
    return fmt::format("Write {} bytes to I2C address 0x{:02x} from register 0x{:02x} on?", bytes,
                       options.address, options.first);
}

void set(Session& session, Output& output, const SetOptions& options) {
    const auto bytes = bytesOf(options);
    requireRegisters(options, options.first, std::max<std::size_t>(options.values.size(), 1));
    const Consent consent(options.yes);
    const auto bus = chooseBus(session, options);
    consent.ask(questionOf(options, bytes.size()));
    const I2cTarget target{*bus, options.address, options.wide};
    if (bytes.empty())
        writePointer(session, target, options.first);
    else
        writePages(session, target, options.first, bytes, pageSize(options), options.verify);
    output.show(
        [&](JsonWriter& json) {
            write(json, *bus, options, options.first, options.values, options.verify && !bytes.empty());
        },
        [](TextWriter&) {});
}

} // namespace

std::shared_ptr<I2c_v1_0> chooseBus(Session& session, const ObjectOptions& options) {
    return chooseObject<I2c_v1_0>(session, options.object, "i2c bus");
}

std::vector<Command> i2cCommands() {
    return {
        command("i2c detect", "Show which addresses acknowledge a read", detect),
        command("i2c dump", "Show the registers of a device", dump),
        command("i2c get", "Read registers, or one byte at the device's current position", get),
        command("i2c set", "Write registers; asks first", set),
        command("i2c transfer", "Send messages as i2ctransfer does; asks before it writes", transferMessages),
    };
}

} // namespace TAVO::cli
