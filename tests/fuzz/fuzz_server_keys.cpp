#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tests/fuzz/memory_file.h>

// Files of server keys, which the build reads. Input: the file. The build's reader and the one below must
// agree on what is valid; a valid file yields its four keys, every other is refused with its name and without
// its keys.

namespace {

using fuzz::require;

struct Key {
    bool first;
    bool second;
    std::string digits;
};

bool isBlank(char c) { return std::string_view(" \t\n\v\f\r").find(c) != std::string_view::npos; }
bool isDigit(char c) { return std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos; }

std::string_view stripped(std::string_view line) {
    while (!line.empty() && isBlank(line.front()))
        line.remove_prefix(1);
    while (!line.empty() && isBlank(line.back()))
        line.remove_suffix(1);
    return line;
}

/// The words between blanks and tabs.
std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    while (!line.empty()) {
        const auto end = std::min(line.find_first_of(" \t"), line.size());
        if (end > 0)
            words.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return words;
}

std::optional<Key> keyIn(std::string_view line) {
    const auto words = wordsOf(line);
    if (words.size() != 3 || words[2].size() != 32)
        return std::nullopt;
    for (const auto flag : {words[0], words[1]})
        if (flag != "0" && flag != "1")
            return std::nullopt;
    for (const char c : words[2])
        if (!isDigit(c))
            return std::nullopt;
    return Key{words[0] == "1", words[1] == "1", std::string(words[2])};
}

/// The keys of a valid file.
std::optional<std::vector<Key>> keysIn(std::string_view file) {
    std::vector<Key> keys;
    if (file.find('\0') != std::string_view::npos)
        return std::nullopt;
    while (!file.empty()) {
        const auto end = std::min(file.find('\n'), file.size());
        const auto line = stripped(file.substr(0, end));
        file.remove_prefix(std::min(end + 1, file.size()));
        if (line.empty() || line.front() == '#')
            continue;
        const auto key = keyIn(line);
        const auto place = keys.size();
        if (!key || place == 4 || key->first != (place >= 2) || key->second != (place % 2 != 0))
            return std::nullopt;
        keys.push_back(*key);
    }
    if (keys.size() != 4)
        return std::nullopt;
    return keys;
}

std::string rowOf(const Key& key) {
    const auto word = [](bool flag) { return std::string(flag ? "true" : "false"); };
    auto row = "    {" + word(key.first) + ", " + word(key.second) + ", {";
    for (std::size_t i = 0; i < key.digits.size(); i += 2)
        row += (i == 0 ? "0x" : ", 0x") + key.digits.substr(i, 2);
    return row + "}},\n";
}

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

struct Outcome {
    bool accepted;
    std::string messages;
    std::string source;
};

/// Lets CMake read the file.
class Reader {
public:
    Reader() {
        const char* base = std::getenv("TMPDIR");
        folder_ = std::string(base ? base : "/tmp") + "/tavo_fuzz_keys_XXXXXX";
        require(::mkdtemp(folder_.data()) != nullptr, "there is room for the files");
    }
    ~Reader() {
        ::unlink(source().c_str());
        ::rmdir(folder_.c_str());
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    Outcome read(fuzz::View content) {
        keys_.write(content);
        ::unlink(source().c_str());
        messages_.write({});
        const auto status = run();
        return {status == 0, messages_.read(), contentOf(source())};
    }
    std::string file() const { return keys_.path(); }

private:
    std::string source() const { return folder_ + "/keys.cpp"; }

    int run() const {
        const auto keysFile = "KEYS_FILE=" + file();
        const auto sourceFile = "SOURCE=" + source();
        const std::string script = TAVO_SOURCE_DIR "/tests/fuzz/write_server_keys.cmake";
        const std::array<const char*, 8> words{TAVO_CMAKE_COMMAND, "-D", keysFile.c_str(), "-D",
                                               sourceFile.c_str(), "-P", script.c_str(),   nullptr};
        posix_spawn_file_actions_t streams;
        ::posix_spawn_file_actions_init(&streams);
        ::posix_spawn_file_actions_addopen(&streams, 1, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&streams, 2, messages_.path().c_str(), O_WRONLY, 0);
        pid_t child = 0;
        const auto failure = ::posix_spawn(&child, words[0], &streams, nullptr,
                                           const_cast<char* const*>(words.data()), environ);
        ::posix_spawn_file_actions_destroy(&streams);
        require(failure == 0, "CMake can be run");
        int status = 0;
        while (::waitpid(child, &status, 0) < 0) // the fuzzer's alarms interrupt it
            require(errno == EINTR, "the end of CMake can be awaited");
        require(WIFEXITED(status), "CMake ends by itself");
        return WEXITSTATUS(status);
    }

    fuzz::MemoryFile keys_;
    fuzz::MemoryFile messages_;
    std::string folder_;
};

/// Messages are wrapped at blanks, so that a row of digits stays whole.
bool showsKey(const std::string& messages) {
    std::size_t digits = 0;
    for (const char c : messages) {
        digits = isDigit(c) ? digits + 1 : 0;
        if (digits == 32)
            return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
    static Reader reader;
    const auto expected = keysIn({reinterpret_cast<const char*>(bytes), length});
    const auto outcome = reader.read({bytes, length});
    require(outcome.accepted == expected.has_value(), "valid files are accepted and no others",
            outcome.messages);
    if (!expected) {
        require(outcome.messages.find(reader.file()) != std::string::npos, "a refusal names the file",
                outcome.messages);
        require(outcome.source.empty(), "a file that is refused yields nothing");
        require(!showsKey(outcome.messages), "a message shows no key", outcome.messages);
        return 0;
    }
    std::string rows;
    for (const auto& key : *expected)
        rows += rowOf(key);
    const auto first = outcome.source.find("{{\n") + 3;
    const auto last = outcome.source.find("}};\n");
    require(last != std::string::npos && outcome.source.substr(first, last - first) == rows,
            "a valid file yields its keys", outcome.source);
    return 0;
}
