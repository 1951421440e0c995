#include <tavo/cli/commands/commands.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <fmt/format.h>

#include <tavo/cli/command_group.h>
#include <tavo/cli/consent.h>
#include <tavo/cli/files.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/new_file.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/progress_bar.h>

namespace TAVO::cli {

namespace {

using HWDebug::LpcRomEmulation_v1_0;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t chunkSize = 1024 * 1024;
constexpr std::uint32_t chunksPerExchange = 2;
constexpr std::uint32_t highest = 0x7fffffff;

struct Arguments {
    std::string object;
    std::string file;
    std::uint32_t offset = 0;
    std::optional<std::uint32_t> length;
    bool unverified = false;
    bool enable = false;
    bool yes = false;
};

/// A part of the ROM's memory.
struct Part {
    std::uint32_t offset;
    std::uint32_t length;
};

/// The memory of one ROM emulation, moved in few exchanges. Between them signals end the work.
class RomMemory {
public:
    RomMemory(Session& session, const Arguments& arguments)
        : session_(session)
        , rom_(chooseObject<LpcRomEmulation_v1_0>(session, arguments.object, "ROM emulation"))
        , size_(static_cast<std::uint32_t>(std::max(0, session.value(rom_->getSramSizeGetMethod()).size))) {}

    const LpcRomEmulation_v1_0& rom() const { return *rom_; }
    std::uint32_t size() const { return size_; }

    /// @throws Failure (usage) unless the part lies inside the memory.
    void require(std::uint64_t offset, std::uint64_t length) const {
        if (offset + length > size_)
            throw Failure(
                ExitCode::usage,
                fmt::format("{} bytes at offset {} do not fit in the ROM's {} bytes", length, offset, size_));
    }

    void write(std::uint32_t offset, std::span<const std::uint8_t> data) {
        ProgressBar bar("writing", data.size());
        forExchanges(static_cast<std::uint32_t>(data.size()), bar, [&](const std::vector<Part>& parts) {
            std::vector<std::shared_ptr<Method>> calls;
            calls.reserve(parts.size());
            for (const auto& part : parts) {
                const auto chunk = data.subspan(part.offset, part.length);
                calls.push_back(rom_->getSramSetMethod(static_cast<int>(offset + part.offset),
                                                       Bytes(chunk.begin(), chunk.end())));
            }
            session_.run(calls);
            for (const auto& call : calls)
                requireSuccess(*call);
        });
    }

    /// Hands over chunk after chunk, each with its place behind `offset`.
    void read(const char* what, std::uint32_t offset, std::uint32_t length,
              const std::function<void(std::uint32_t, const Bytes&)>& take) {
        ProgressBar bar(what, length);
        forExchanges(length, bar, [&](const std::vector<Part>& parts) {
            using Get = decltype(rom_->getSramGetMethod(0, 0));
            std::vector<Get> gets;
            gets.reserve(parts.size());
            for (const auto& part : parts)
                gets.push_back(rom_->getSramGetMethod(static_cast<int>(offset + part.offset),
                                                      static_cast<int>(part.length)));
            session_.run({gets.begin(), gets.end()});
            for (std::size_t i = 0; i < parts.size(); ++i) {
                const auto& get = gets[i];
                requireSuccess(*get);
                const auto data = get->take().data;
                if (data.size() != parts[i].length)
                    throw Failure(ExitCode::refused, fmt::format("the device gave {} bytes instead of {}",
                                                                 data.size(), parts[i].length));
                take(parts[i].offset, data);
            }
        });
    }

private:
    template <class Exchange>
    void forExchanges(std::uint32_t length, ProgressBar& bar, Exchange exchange) {
        for (std::uint32_t done = 0; done < length;) {
            InterruptWatch::throwIfInterrupted();
            std::vector<Part> parts;
            while (parts.size() < chunksPerExchange && done < length) {
                parts.push_back({done, std::min(chunkSize, length - done)});
                done += parts.back().length;
            }
            exchange(parts);
            bar.show(done);
        }
    }

    Session& session_;
    std::shared_ptr<LpcRomEmulation_v1_0> rom_;
    std::uint32_t size_;
};

Bytes imageOf(const Arguments& arguments) {
    const auto content = readFile(arguments.file);
    if (content.empty())
        throw Failure(ExitCode::usage, fmt::format("'{}' is empty", arguments.file));
    return {content.begin(), content.end()};
}

void compare(RomMemory& memory, const Arguments& arguments, const Bytes& image) {
    const auto length = static_cast<std::uint32_t>(image.size());
    memory.read("verifying", arguments.offset, length, [&](std::uint32_t place, const Bytes& data) {
        const auto [found, wanted] =
            std::mismatch(data.begin(), data.end(), image.begin() + static_cast<std::ptrdiff_t>(place));
        if (found == data.end())
            return;
        const auto at = place + static_cast<std::uint32_t>(found - data.begin());
        throw Failure(ExitCode::refused,
                      fmt::format("first difference at offset 0x{:x}: the device has 0x{:02x}, '{}' has "
                                  "0x{:02x} at 0x{:x}",
                                  arguments.offset + at, *found, arguments.file, *wanted, at));
    });
}

nlohmann::json documentOf(const RomMemory& memory, const Arguments& arguments, std::size_t bytes) {
    return {{"object", memory.rom().getFullName()},
            {"file", arguments.file},
            {"offset", arguments.offset},
            {"bytes", bytes}};
}

void load(Session& session, Output& output, const Arguments& arguments) {
    const auto image = imageOf(arguments);
    requireConsent(fmt::format("Replace {} bytes at offset {} of the ROM?", image.size(), arguments.offset),
                   arguments.yes);
    RomMemory memory(session, arguments);
    memory.require(arguments.offset, image.size());
    memory.write(arguments.offset, image);
    if (!arguments.unverified)
        compare(memory, arguments, image);
    if (arguments.enable)
        session.execute(memory.rom().getEnableSetMethod(true));

    auto document = documentOf(memory, arguments, image.size());
    document["verified"] = !arguments.unverified;
    document["enabled"] = arguments.enable;
    output.show(document, [&](TextWriter& text) {
        text.print("{} bytes loaded{}{}\n", image.size(), arguments.unverified ? "" : ", verified",
                   arguments.enable ? ", enabled" : "");
    });
}

void save(Session& session, Output& output, const Arguments& arguments) {
    if (arguments.file == "-")
        throw Failure(ExitCode::usage, "the memory is saved to a file, not to the standard output");
    RomMemory memory(session, arguments);
    const auto length = arguments.length.value_or(memory.size() - std::min(arguments.offset, memory.size()));
    memory.require(arguments.offset, length);
    NewFile file(arguments.file);
    memory.read("reading", arguments.offset, length,
                [&](std::uint32_t, const Bytes& data) { file.write(data); });
    file.complete();
    output.show(documentOf(memory, arguments, length),
                [&](TextWriter& text) { text.print("{} bytes saved\n", length); });
}

void verify(Session& session, Output& output, const Arguments& arguments) {
    const auto image = imageOf(arguments);
    RomMemory memory(session, arguments);
    memory.require(arguments.offset, image.size());
    compare(memory, arguments, image);
    auto document = documentOf(memory, arguments, image.size());
    document["verified"] = true;
    output.show(document, [&](TextWriter& text) { text.print("{} bytes verified\n", image.size()); });
}

} // namespace

void addRom(CLI::App& tool, Program& program) {
    CommandGroup<Arguments> rom(tool, program, "rom", "The memory that serves a board's boot ROM");
    auto& arguments = rom.arguments();
    rom.group().add_option("--object", arguments.object,
                           "Full name of the ROM emulation; not needed where there is only one");
    const auto add = [&](const char* name, const char* description, const char* file,
                         CommandGroup<Arguments>::Action action) {
        auto* command = rom.add(name, description, std::move(action));
        command->add_option("file", arguments.file, file)->required();
        command->add_option("--offset", arguments.offset, "Where in the memory, 0 unless given")
            ->check(CLI::Range(std::uint32_t{0}, highest));
        return command;
    };

    auto* loading = add("load", "Write an image and read it back, after a question",
                        "The image, - being the "
                        "standard input",
                        load);
    loading->add_flag("--no-verify", arguments.unverified, "Do not read it back");
    loading->add_flag("--enable", arguments.enable, "Then let the board boot from it");
    loading->add_flag("-y,--yes", arguments.yes, "Do not ask");

    add("save", "Read the memory into a file", "The file, which is replaced when all was read", save)
        ->add_option("--length", arguments.length, "How many bytes, the rest of the memory unless given")
        ->check(CLI::Range(std::uint32_t{0}, highest));
    add("verify", "Compare the memory with an image", "The image, - being the standard input", verify);
}

} // namespace TAVO::cli
