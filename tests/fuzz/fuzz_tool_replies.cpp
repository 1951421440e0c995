#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include <tavo/cli/tool.h>
#include <tests/cli/attack/spoiling_proxy.h>
#include <tests/cli/attack/verbs.h>
#include <tests/fuzz/fuzz_input.h>
#include <tests/support/allocation_meter.h>

// The whole tool, all its verbs, against an appliance one of whose replies is spoilt. Input: the number of
// the verb (1 byte), whether it is to write JSON (1 byte), which reply is spoilt, counted from the last one
// (2 bytes), and how (the rest; zeros behind its end). A run without a spoilt reply, the first one of each
// verb, tells how many replies there are.

namespace {

using attack::SpoilingProxy;
using fuzz::require;

struct Surroundings {
    SpoilingProxy proxy{std::chrono::milliseconds(20)};
    std::string folder = std::filesystem::temp_directory_path() / "fuzz-XXXXXX";
    std::vector<attack::Verb> verbs;
    std::map<std::size_t, std::size_t> replies;

    Surroundings() {
        require(mkdtemp(folder.data()) != nullptr, "a folder can be made");
        std::ofstream(folder + "/image") << std::string(3000, '\xFF');
        verbs = attack::verbs(folder);
        require(std::freopen("/dev/null", "w", stdout) != nullptr, "the output goes nowhere");
    }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
    ~Surroundings() { std::filesystem::remove_all(folder); }
};

Surroundings& surroundings() {
    static Surroundings all;
    return all;
}

void setInput(const std::string& content) {
    const int file = memfd_create("input", MFD_CLOEXEC);
    require(file >= 0 &&
                write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size()) &&
                lseek(file, 0, SEEK_SET) == 0 && dup2(file, 0) == 0 && close(file) == 0,
            "there is an input");
}

int runTool(const attack::Verb& verb, bool json, std::uint16_t port) {
    attack::Words words{"tavo",   "--host",   "127.0.0.1", "--port", std::to_string(port),
                        "--user", "engineer", "--timeout", "4s"};
    if (json)
        words.emplace_back("--json");
    const auto command = verb.words();
    words.insert(words.end(), command.begin(), command.end());
    std::vector<char*> pointers;
    for (auto& word : words)
        pointers.push_back(word.data());
    setInput(verb.input);
    setenv("TAVO_PASSWORD", "tavo", 1);
    setenv("TAVO_CONFIG", "/dev/null", 1);
    return TAVO::cli::runTool(static_cast<int>(pointers.size()), pointers.data());
}

std::size_t usualReplies(std::size_t number) {
    auto& all = surroundings();
    auto& known = all.replies[number];
    if (known == 0) {
        all.proxy.begin(0, {});
        require(runTool(all.verbs[number], false, all.proxy.port()) == 0, "a verb works",
                all.verbs[number].name);
        known = all.proxy.end().replies;
    }
    return known;
}

std::size_t numberFrom(fuzz::Input& input, std::size_t below) {
    std::size_t number = 0;
    for (auto most = below - 1; most > 0; most >>= 8)
        number = number << 8 | input.byte();
    return number % below;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    auto& all = surroundings();
    fuzz::Input input(bytes, length);
    const auto number = input.byte() % all.verbs.size();
    const bool json = input.byte() % 2 != 0;
    const auto replies = usualReplies(number);
    const auto fromLast = input.word() % replies;

    all.proxy.begin(replies - fromLast, [&](const attack::Bytes& reply) {
        return attack::Spoiler(reply, [&](std::size_t below) { return numberFrom(input, below); }).spoilt();
    });
    const support::AllocationMeter memory;
    const auto status = runTool(all.verbs[number], json, all.proxy.port());
    const auto outcome = all.proxy.end();
    const auto& name = all.verbs[number].name;
    require((status >= 0 && status <= 5) || status == 9, "the status is a known one", name);
    require(memory.largest() <= (std::size_t{64} << 20) + 8 * outcome.bytes,
            "memory follows the bytes that came", name);
    require(!outcome.spoiltUnderLock || !all.proxy.simulator().lockHolder(), "the device is unlocked", name);
    return 0;
}
