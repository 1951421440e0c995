#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/attack/spoiling_proxy.h>
#include <tests/cli/attack/verbs.h>
#include <tests/cli/command_names.h>
#include <tests/cli/tool_fixture.h>
#include <tests/support/sanitizers.h>

// Every verb of the tool against an appliance one of whose replies is spoilt, each run in a process of its
// own. The same in every run; scripts/fuzz goes on from here (fuzz_tool_replies).

namespace {

using namespace attack;

constexpr std::size_t spoiltRuns = 7; // for each verb
constexpr unsigned workers = 4;
constexpr std::chrono::milliseconds patience{300};
// The time-out is for each exchange: one that is spoilt, and the way back from it.
constexpr const char* timeout = "4s";
constexpr std::chrono::seconds longestRun{30};
constexpr std::size_t kibibyte = 1024;
constexpr std::size_t memoryAllowance = 64 * kibibyte; // in KiB

class Folder {
public:
    Folder() {
        if (!mkdtemp(path_.data()))
            throw std::runtime_error("cannot make a folder");
        std::ofstream(path_ + "/image") << std::string(3000, '\xFF');
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { std::filesystem::remove_all(path_); }

    const std::string& path() const { return path_; }

private:
    std::string path_ = std::filesystem::temp_directory_path() / "attack-XXXXXX";
};

/// What a run without a spoilt reply needs.
struct Measure {
    std::size_t replies = 0;
    std::size_t kibibytes = 0;
};

/// One of those who carry out the runs, with an appliance of its own.
class Attacker {
public:
    Measure measure(const Verb& verb, bool json) {
        proxy_.begin(0, {});
        const auto ended = run(verb, json, "1m");
        const auto outcome = proxy_.end();
        if (ended.exitCode != 0)
            complain(verb, "fails without an attack: " + ended.errors);
        return {outcome.replies, ended.peakKilobytes};
    }

    void attack(const Verb& verb, bool json, const Measure& usual, std::uint64_t seed) {
        std::mt19937_64 numbers(seed);
        const Chance chance = [&](std::size_t below) { return static_cast<std::size_t>(numbers() % below); };
        // Most replies are of the opening: every other run spoils one of the last.
        const auto last = chance(2) == 0 ? usual.replies : std::min<std::size_t>(usual.replies, 5);
        proxy_.begin(usual.replies - chance(last),
                     [&](const Bytes& reply) { return Spoiler(reply, chance).spoilt(); });
        const auto begin = std::chrono::steady_clock::now();
        const auto ended = run(verb, json, timeout);
        const auto lasted = std::chrono::steady_clock::now() - begin;
        const auto outcome = proxy_.end();
        const auto name = "seed " + std::to_string(seed) + (json ? ", --json: " : ": ");
        if (ended.signal != 0)
            complain(verb, name + "ended by signal " + std::to_string(ended.signal) + ": " + ended.errors);
        else if (ended.errors.find("Sanitizer") != std::string::npos ||
                 ended.errors.find("runtime error") != std::string::npos)
            complain(verb, name + ended.errors);
        else if (!std::set{0, 1, 2, 3, 4, 5, 9}.contains(ended.exitCode))
            complain(verb, name + "status " + std::to_string(ended.exitCode));
        else if (ended.exitCode != 0 && ended.errors.empty())
            complain(verb, name + "fails without a word");
        if (lasted > longestRun)
            complain(verb, name + "does not end in time");
        const auto sent = outcome.bytes / kibibyte;
        if (!support::sanitizerTakesMemory &&
            ended.peakKilobytes > usual.kibibytes + std::max(memoryAllowance, 8 * sent))
            complain(verb, name + std::to_string(ended.peakKilobytes) + " KiB instead of " +
                               std::to_string(usual.kibibytes) + " for " + std::to_string(sent) + " KiB");
        if (outcome.spoiltUnderLock && proxy_.simulator().lockHolder())
            complain(verb, name + "leaves the device locked");
    }

    std::vector<std::string> complaints;

private:
    support::ProcessOutcome run(const Verb& verb, bool json, const char* limit) const {
        auto setup = tool_test::toolWith(Words{"--host", "127.0.0.1", "--port", std::to_string(proxy_.port()),
                                               "--user", "engineer", "--timeout", limit});
        if (json)
            setup.arguments.emplace_back("--json");
        const auto words = verb.words();
        setup.arguments.insert(setup.arguments.end(), words.begin(), words.end());
        setup.input = verb.input;
        setup.environment["TAVO_PASSWORD"] = "tavo";
        return support::runProcess(setup);
    }
    void complain(const Verb& verb, const std::string& what) {
        complaints.push_back(verb.name + ", " + what);
    }

    SpoilingProxy proxy_{patience};
};

TEST(AttackedTool, VerbsAreAllThatThereAre) {
    std::set<std::string> known;
    for (const auto& verb : verbs("/tmp"))
        known.insert(verb.name);
    EXPECT_EQ(known, tool_test::commandNames());
}

TEST(AttackedTool, EndsWithAWordInTimeWithLittleMemoryAndUnlocks) {
    const Folder folder;
    const auto all = verbs(folder.path());
    std::atomic<std::size_t> next = 0;
    std::vector<std::unique_ptr<Attacker>> attackers;
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < workers; ++i) {
        attackers.push_back(std::make_unique<Attacker>());
        threads.emplace_back([&, &attacker = *attackers.back()] {
            try {
                for (auto number = next++; number < all.size(); number = next++)
                    for (const bool json : {false, true}) {
                        const auto& verb = all[number];
                        const auto usual = attacker.measure(verb, json);
                        for (std::size_t run = json ? 1 : 0; run < spoiltRuns; run += 2)
                            attacker.attack(verb, json, usual, 1000 * number + run);
                    }
            } catch (const std::exception& failure) {
                attacker.complaints.emplace_back(failure.what());
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    for (const auto& attacker : attackers)
        EXPECT_THAT(attacker->complaints, testing::IsEmpty());
}

} // namespace
