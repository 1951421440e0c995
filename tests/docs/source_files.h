#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

/// The files of the checkout, as the tests of its documents read them.
namespace docs {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

inline Lines linesOf(const fs::path& file) {
    std::ifstream in(file);
    Lines lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

inline std::vector<fs::path> filesBelow(const fs::path& folder, const std::string& extension) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().extension() == extension)
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace docs
