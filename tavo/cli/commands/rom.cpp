#include <tavo/cli/commands/rom.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include <tavo/cli/commands/commands.h>
#include <tavo/cli/consent.h>
#include <tavo/cli/files.h>
#include <tavo/cli/interrupt.h>
#include <tavo/cli/new_file.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/progress_bar.h>

namespace TAVO::cli {

namespace {

using HWDebug::LpcRomEmulation_v1_0;
namespace lpcRomEmulation_v1_0 = TAVOXTranscode::lpcRomEmulation_v1_0;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t chunkSize = 1024 * 1024;
constexpr std::uint32_t chunksPerExchange = 2;
constexpr std::uint32_t highest = 0x7fffffff;

/// A file, and the place of its content in the memory.
struct FileOptions : ObjectOptions {
    std::string file;
    std::uint32_t offset = 0;

protected:
    void describeFile(OptionList& list, const char* help) {
        list.add("file", file, help, {.required = true, .kind = ValueKind::file});
        list.add("--offset", offset, "Offset in the memory; default 0",
                 {.limits = between(std::uint32_t{0}, highest)});
    }
};

/// A part of the ROM's memory.
struct Part {
    std::uint32_t offset;
    std::uint32_t length;
};

/// The memory of one ROM emulation, transferred in few exchanges. A signal ends the transfer between
/// exchanges.
class RomMemory {
public:
    RomMemory(Session& session, const FileOptions& options)
        : session_(session)
        , rom_(chooseObject<LpcRomEmulation_v1_0>(session, options.object, "ROM emulation"))
        , size_(static_cast<std::uint32_t>(
              std::max(0, session.value(*rom_, lpcRomEmulation_v1_0::sramSizeGet).size))) {}

    const LpcRomEmulation_v1_0& rom() const { return *rom_; }
    std::uint32_t size() const { return size_; }

    /// @throws Failure (usage) unless the part is within the memory.
    void require(std::uint64_t offset, std::uint64_t length) const {
        if (offset + length > size_)
            throw Failure(
                ExitCode::usage,
                fmt::format("{} bytes at offset {} do not fit in the ROM's {} bytes", length, offset, size_));
    }

    /// @param[out] written how many bytes the device has taken, also if this throws.
    void write(std::uint32_t offset, std::span<const std::uint8_t> data, std::uint32_t& written) {
        ProgressBar bar("writing", data.size());
        forExchanges(static_cast<std::uint32_t>(data.size()), bar, [&](const std::vector<Part>& parts) {
            std::vector<std::shared_ptr<Method>> calls;
            calls.reserve(parts.size());
            for (const auto& part : parts) {
                const auto chunk = data.subspan(part.offset, part.length);
                calls.push_back(rom_->getSramSetMethod(static_cast<int>(offset + part.offset),
                                                       Bytes(chunk.begin(), chunk.end())));
            }
            session_.runAll(calls);
            written = parts.back().offset + parts.back().length;
        });
    }

    /// Passes each chunk to `take`, with its position after `offset`.
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

void compare(RomMemory& memory, const FileOptions& options, const Bytes& image) {
    const auto length = static_cast<std::uint32_t>(image.size());
    memory.read("verifying", options.offset, length, [&](std::uint32_t place, const Bytes& data) {
        const auto [found, wanted] =
            std::mismatch(data.begin(), data.end(), image.begin() + static_cast<std::ptrdiff_t>(place));
        if (found == data.end())
            return;
        const auto at = place + static_cast<std::uint32_t>(found - data.begin());
        throw Failure(ExitCode::refused,
                      fmt::format("first difference at offset 0x{:x}: the device has 0x{:02x}, '{}' has "
                                  "0x{:02x} at 0x{:x}",
                                  options.offset + at, *found, options.file, *wanted, at));
    });
}

nlohmann::json documentOf(const RomMemory& memory, const FileOptions& options, std::size_t bytes) {
    return {{"object", memory.rom().getFullName()},
            {"file", options.file},
            {"offset", options.offset},
            {"bytes", bytes}};
}

struct LoadOptions : FileOptions {
    bool unverified = false;
    bool enable = false;
    bool live = false;
    bool yes = false;

    void describe(OptionList& list) {
        describeFile(list, "The image; - for standard input");
        list.add("--no-verify", unverified, "Do not read the image back");
        list.add("--enable", enable, "Let the board boot from it afterwards");
        list.add("--live", live, "Do not disable an enabled ROM while its content changes");
        list.add("-y,--yes", yes, "Do not ask for confirmation");
    }
};

/// Keeps a board from booting from half an image: the emulation is off from before the first write until all
/// is well.
class Loading {
public:
    Loading(Session& session, const LoadOptions& options, const Bytes& image)
        : session_(session)
        , options_(options)
        , image_(image)
        , memory_(session, options)
        , wasEnabled_(session.value(memory_.rom(), lpcRomEmulation_v1_0::enableGet).enable)
        , enabled_(wasEnabled_) {
        memory_.require(options.offset, image.size());
    }

    const RomMemory& memory() const { return memory_; }
    bool isEnabled() const { return enabled_; }

    void run() {
        if (!options_.live)
            enable(false);
        memory_.write(options_.offset, image_, written_);
        if (!options_.unverified)
            compare(memory_, options_, image_);
        enable(wasEnabled_ || options_.enable);
    }

    /// How far it came, for when run() throws.
    std::string stateText() const {
        return fmt::format("at least {} of {} bytes were written; the ROM is {}", written_, image_.size(),
                           enabled_ ? "enabled" : "off");
    }

private:
    void enable(bool enabled) {
        if (enabled != enabled_)
            session_.execute(memory_.rom(), lpcRomEmulation_v1_0::enableSet, enabled);
        enabled_ = enabled;
    }

    Session& session_;
    const LoadOptions& options_;
    const Bytes& image_;
    RomMemory memory_;
    bool wasEnabled_;
    bool enabled_;
    std::uint32_t written_ = 0;
};

void load(Session& session, Output& output, const LoadOptions& options) {
    const auto image = readImage(options.file);
    const Consent consent(options.yes);
    Loading loading(session, options, image);
    consent.ask(fmt::format("Replace {} bytes at offset {} of the ROM?", image.size(), options.offset));
    try {
        loading.run();
    } catch (const std::exception&) {
        output.warn(loading.stateText());
        throw;
    }

    auto document = documentOf(loading.memory(), options, image.size());
    document["verified"] = !options.unverified;
    document["enabled"] = loading.isEnabled();
    output.show(document, [&](TextWriter& text) {
        text.print("{} bytes loaded{}{}\n", image.size(), options.unverified ? "" : ", verified",
                   loading.isEnabled() ? ", enabled" : "");
    });
}

struct SaveOptions : FileOptions {
    std::optional<std::uint32_t> length;

    void describe(OptionList& list) {
        describeFile(list, "The file, replaced once everything was read; - for standard output");
        list.add("--length", length, "Number of bytes; default: the rest of the memory",
                 {.limits = between(std::uint32_t{0}, highest)});
    }
};

/// @throws Failure (usage) if standard output cannot take the bytes of the memory.
void requireBinaryOutput(const Output& output) {
    if (output.isJson())
        throw Failure(ExitCode::usage, "--json does not work with -: standard output takes the memory");
    if (::isatty(STDOUT_FILENO) == 1)
        throw Failure(ExitCode::usage, "standard output is a terminal: name a file, or redirect it");
}

void save(Session& session, Output& output, const SaveOptions& options) {
    if (options.file == "-")
        requireBinaryOutput(output);
    RomMemory memory(session, options);
    const auto length = options.length.value_or(memory.size() - std::min(options.offset, memory.size()));
    memory.require(options.offset, length);
    if (options.file == "-") {
        memory.read("reading", options.offset, length, [&](std::uint32_t, const Bytes& data) {
            output.write({reinterpret_cast<const char*>(data.data()), data.size()});
            output.finish();
        });
        return;
    }
    NewFile file(options.file);
    memory.read("reading", options.offset, length,
                [&](std::uint32_t, const Bytes& data) { file.write(data); });
    file.complete();
    output.show(documentOf(memory, options, length),
                [&](TextWriter& text) { text.print("{} bytes saved\n", length); });
}

struct VerifyOptions : FileOptions {
    void describe(OptionList& list) { describeFile(list, "The image; - for standard input"); }
};

void verify(Session& session, Output& output, const VerifyOptions& options) {
    const auto image = readImage(options.file);
    RomMemory memory(session, options);
    memory.require(options.offset, image.size());
    compare(memory, options, image);
    auto document = documentOf(memory, options, image.size());
    document["verified"] = true;
    output.show(document, [&](TextWriter& text) { text.print("{} bytes verified\n", image.size()); });
}

} // namespace

std::vector<Command> romCommands() {
    return {
        command("rom load", "Write an image and read it back; asks first", load),
        command("rom save", "Read the memory into a file", save),
        command("rom verify", "Compare the memory with an image", verify),
        command("rom serve", "Be a programmer for flashrom, with the memory as its flash chip", serveRom),
    };
}

} // namespace TAVO::cli
