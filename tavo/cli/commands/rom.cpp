#include <tavo/cli/commands/rom.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include <tavo/cli/commands/commands.h>
#include <tavo/cli/consent.h>
#include <tavo/cli/files.h>
#include <tavo/cli/new_file.h>
#include <tavo/cli/object_choice.h>
#include <tavo/cli/output.h>
#include <tavo/cli/progress_bar.h>
#include <tavo/cli/session_access.h>
#include <tavo/toolkit/rom.h>

namespace TAVO::cli {

namespace {

using HWDebug::LpcRomEmulation_v1_0;
using toolkit::RomMemory;
using Bytes = std::vector<std::uint8_t>;

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

using SharedRom = std::shared_ptr<LpcRomEmulation_v1_0>;

SharedRom chooseRom(Session& session, const FileOptions& options) {
    return chooseObject<LpcRomEmulation_v1_0>(session, options.object, "ROM emulation");
}

/// Shows a bar for each phase.
toolkit::Progress shownBy(std::optional<ProgressBar>& bar) {
    return [&bar](std::string_view phase, std::uint64_t done, std::uint64_t total) {
        if (done == 0)
            bar.emplace(phase, total);
        else
            bar->show(done);
        if (done == total)
            bar.reset();
    };
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

void load(Session& session, Output& output, const LoadOptions& options) {
    const auto image = readImage(options.file);
    const Consent consent(options.yes);
    SessionAccess access(session);
    toolkit::RomLoading loading(access, chooseRom(session, options), image, options.file,
                                {.offset = options.offset,
                                 .verifies = !options.unverified,
                                 .enables = options.enable,
                                 .isLive = options.live});
    consent.ask(fmt::format("Replace {} bytes at offset {} of the ROM?", image.size(), options.offset));
    try {
        std::optional<ProgressBar> bar;
        loading.run(shownBy(bar));
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
    SessionAccess access(session);
    RomMemory memory(access, chooseRom(session, options));
    const auto length = options.length.value_or(memory.size() - std::min(options.offset, memory.size()));
    memory.require(options.offset, length);
    std::optional<ProgressBar> bar;
    const auto read = [&](const std::function<void(std::uint32_t, const Bytes&)>& take) {
        memory.read("reading", options.offset, length, take, shownBy(bar));
    };
    if (options.file == "-") {
        read([&](std::uint32_t, const Bytes& data) {
            output.write({reinterpret_cast<const char*>(data.data()), data.size()});
            output.finish();
        });
        return;
    }
    NewFile file(options.file);
    read([&](std::uint32_t, const Bytes& data) { file.write(data); });
    file.complete();
    output.show(documentOf(memory, options, length),
                [&](TextWriter& text) { text.print("{} bytes saved\n", length); });
}

struct VerifyOptions : FileOptions {
    void describe(OptionList& list) { describeFile(list, "The image; - for standard input"); }
};

void verify(Session& session, Output& output, const VerifyOptions& options) {
    const auto image = readImage(options.file);
    SessionAccess access(session);
    RomMemory memory(access, chooseRom(session, options));
    memory.require(options.offset, image.size());
    {
        std::optional<ProgressBar> bar;
        memory.compare(options.offset, image, options.file, shownBy(bar));
    }
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
