#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/command_group.h>
#include <tavo/cli/consent.h>
#include <tavo/cli/i2c_transfers.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/user_input.h>
#include <tavo/cli/values/i2c_grid.h>

namespace TAVO::cli {

namespace {

using HWDebug::I2c_v1_0;

struct Arguments {
    std::string object;
    std::uint32_t first = 0x08;
    std::uint32_t last = 0x77;
    std::uint32_t address = 0;
    std::optional<std::uint32_t> number;
    std::uint32_t count = 1;
    std::string range;
    bool wide = false;
    std::uint32_t page = 0;
    std::vector<std::uint32_t> values;
    bool verify = false;
    bool yes = false;

    std::uint32_t highestRegister() const { return wide ? 0xffff : 0xff; }
};

auto busOf(Session& session, const Arguments& arguments) {
    return chooseObject<I2c_v1_0>(session, arguments.object, "i2c bus");
}

void checkRegisters(const Arguments& arguments, std::size_t count) {
    if (*arguments.number + count > arguments.highestRegister() + std::size_t{1})
        throw Failure(ExitCode::usage,
                      fmt::format("{} registers from 0x{:02x} on go beyond 0x{:02x}{}", count,
                                  *arguments.number, arguments.highestRegister(),
                                  arguments.wide ? "" : " (--word-address for numbers of 16 bits)"));
}

void detect(Session& session, Output& output, const Arguments& arguments) {
    const NumberRange range{arguments.first, arguments.last};
    if (range.first > range.last)
        throw Failure(ExitCode::usage, "the first address is above the last");
    const auto bus = busOf(session, arguments);
    const auto found = acknowledgingAddresses(session, *bus, range);
    output.show(
        {{"object", bus->getFullName()}, {"first", range.first}, {"last", range.last}, {"found", found}},
        [&](TextWriter& text) { text.write(detectGrid(range, found)); });
}

/// What was read or written, one number for each register.
template <class Bytes>
void write(JsonWriter& json, const I2c_v1_0& bus, const Arguments& arguments,
           std::optional<std::uint32_t> first, const Bytes& bytes, std::optional<bool> verified = {}) {
    json.object([&] {
        json.key("address").number(arguments.address);
        if (first)
            json.key("first").number(*first);
        json.key("object").text(bus.getFullName());
        json.key("values").array([&] {
            for (const RegisterByte byte : bytes) {
                if (byte)
                    json.number(*byte);
                else
                    json.null();
            }
        });
        if (verified)
            json.key("verified").flag(*verified);
    });
}

void dump(Session& session, Output& output, const Arguments& arguments) {
    const auto highest = arguments.highestRegister();
    const auto range = arguments.range.empty()
                           ? NumberRange{0, highest}
                           : parseInput([&] { return parseRange(arguments.range, highest); });
    const auto bus = busOf(session, arguments);
    const auto target = I2cTarget{*bus, arguments.address, arguments.wide};
    const auto bytes =
        arguments.wide ? readInBlocks(session, target, range) : readEach(session, target, range);
    const auto missing = std::count(bytes.begin(), bytes.end(), std::nullopt);
    if (missing == static_cast<std::ptrdiff_t>(bytes.size()))
        throw notAcknowledged(target);

    output.show([&](JsonWriter& json) { write(json, *bus, arguments, range.first, bytes); },
                [&](TextWriter& text) { text.write(dumpGrid(range.first, bytes, arguments.wide)); });
    if (missing != 0)
        throw Failure(ExitCode::refused,
                      fmt::format("{} of {} registers were not acknowledged", missing, bytes.size()));
}

void get(Session& session, Output& output, const Arguments& arguments) {
    if (arguments.number)
        checkRegisters(arguments, arguments.count);
    const auto bus = busOf(session, arguments);
    const I2cTarget target{*bus, arguments.address, arguments.wide};
    const auto bytes = readRun(session, target, arguments.number, arguments.count);
    output.show([&](JsonWriter& json) { write(json, *bus, arguments, arguments.number, bytes); },
                [&](TextWriter& text) {
                    const char* separator = "";
                    for (const auto byte : bytes)
                        text.print("{}0x{:02x}", std::exchange(separator, " "), byte);
                    text.write(bytes.empty() ? "0x\n" : "\n");
                });
}

std::uint32_t pageSize(const Arguments& arguments) {
    // The smallest that devices with such register numbers have; larger pages are multiples of it.
    const std::uint32_t smallest = arguments.wide ? 32 : 8;
    return arguments.page != 0 ? arguments.page : smallest;
}

void set(Session& session, Output& output, const Arguments& arguments) {
    const std::vector<std::uint8_t> bytes(arguments.values.begin(), arguments.values.end());
    checkRegisters(arguments, bytes.size());
    requireConsent(fmt::format("Write {} bytes to I2C address 0x{:02x} from register 0x{:02x} on?",
                               bytes.size(), arguments.address, *arguments.number),
                   arguments.yes);
    const auto bus = busOf(session, arguments);
    const I2cTarget target{*bus, arguments.address, arguments.wide};
    writePages(session, target, *arguments.number, bytes, pageSize(arguments), arguments.verify);
    output.show(
        [&](JsonWriter& json) { write(json, *bus, arguments, arguments.number, bytes, arguments.verify); },
        [](TextWriter&) {});
}

void addAddress(CLI::App* command, Arguments& arguments) {
    command->add_option("address", arguments.address, "7-bit address of the device, such as 0x50")
        ->required()
        ->check(CLI::Range(0x00, 0x7f));
    command->add_flag("--word-address", arguments.wide, "The device's register numbers have 16 bits");
}

CLI::Option* addRegister(CLI::App* command, Arguments& arguments) {
    return command->add_option("register", arguments.number, "First register")
        ->check(CLI::Range(0x0000, 0xffff));
}

} // namespace

void addI2c(CLI::App& tool, Program& program) {
    CommandGroup<Arguments> i2c(tool, program, "i2c",
                                "Look for devices on an I2C bus, read and write their registers");
    auto& arguments = i2c.arguments();
    i2c.group().add_option("--object", arguments.object,
                           "Full name of the bus; not needed where there is only one");

    auto* detecting = i2c.add("detect", "Which addresses acknowledge when a byte is read", detect);
    auto* first = detecting->add_option("first", arguments.first, "First address, 0x08 unless given")
                      ->check(CLI::Range(0x00, 0x7f));
    auto* last = detecting->add_option("last", arguments.last, "Last address, 0x77 unless given")
                     ->check(CLI::Range(0x00, 0x7f));
    first->needs(last);

    auto* dumping = i2c.add("dump", "The registers of a device", dump);
    addAddress(dumping, arguments);
    dumping->add_option("--range", arguments.range, "Which registers, all unless given: A-B");

    auto* getting = i2c.add("get", "Read registers, or a byte from where the device stands", get);
    addAddress(getting, arguments);
    addRegister(getting, arguments);
    getting->add_option("count", arguments.count, "How many, 1 unless given")->check(CLI::Range(1, 0x10000));

    auto* setting = i2c.add("set", "Write registers, after a question", set);
    addAddress(setting, arguments);
    addRegister(setting, arguments)->required();
    setting->add_option("values", arguments.values, "A byte for each register")
        ->required()
        ->check(CLI::Range(0x00, 0xff));
    setting
        ->add_option(
            "--page", arguments.page,
            "How many registers the device can store at a time, 8 unless given, 32 with --word-address")
        ->check(CLI::Range(1, 0x10000));
    setting->add_flag("--verify", arguments.verify, "Read the registers back and compare");
    setting->add_flag("-y,--yes", arguments.yes, "Do not ask");
}

} // namespace TAVO::cli
