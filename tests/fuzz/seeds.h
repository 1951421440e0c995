#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include <tests/fuzz/fuzz_input.h>

namespace fuzz {

/// A folder with the inputs that each fuzzer starts from.
class Seeds {
public:
    explicit Seeds(std::filesystem::path folder)
        : folder_(std::move(folder)) {}

    void add(const std::string& target, const Bytes& seed) {
        std::filesystem::create_directories(folder_ / target);
        std::ofstream out(folder_ / target / std::to_string(++count_), std::ios::binary);
        out.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
        if (!out.flush())
            throw std::runtime_error("cannot write to " + folder_.string());
    }
    void add(const std::string& target, const std::string& seed) {
        add(target, Bytes(seed.begin(), seed.end()));
    }

private:
    std::filesystem::path folder_;
    unsigned count_ = 0;
};

/// What clients of the tool's servers send, and what it reads from files of other programs.
void addDoors(Seeds& seeds);

} // namespace fuzz
