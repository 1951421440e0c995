#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const fs::path root = TAVO_SOURCE_DIR;

std::string contentOf(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

Lines linesOf(const fs::path& file) {
    std::istringstream in(contentOf(file));
    Lines lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

bool isBlank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

Lines withoutCommonIndentation(Lines lines) {
    auto indentation = std::string::npos;
    for (const auto& line : lines)
        indentation = std::min(indentation, line.find_first_not_of(' '));
    for (auto& line : lines)
        line = isBlank(line) ? "" : line.substr(indentation);
    return lines;
}

struct Block {
    std::size_t line; // of its first line of code, counted from 1
    Lines code;
};

std::vector<Block> codeBlocksOf(const fs::path& document) {
    std::vector<Block> blocks;
    bool inside = false;
    std::size_t number = 0;
    for (const auto& line : linesOf(document)) {
        ++number;
        const auto start = line.find_first_not_of(' ');
        const auto text = start == std::string::npos ? "" : line.substr(start);
        if (!inside && text == "```cpp") {
            inside = true;
            blocks.push_back({number + 1, {}});
        } else if (inside && text == "```") {
            inside = false;
        } else if (inside) {
            blocks.back().code.push_back(line);
        }
    }
    for (auto& block : blocks)
        block.code = withoutCommonIndentation(block.code);
    return blocks;
}

bool containsAt(const Lines& source, std::size_t place, const Lines& code) {
    const Lines excerpt(source.begin() + static_cast<std::ptrdiff_t>(place),
                        source.begin() + static_cast<std::ptrdiff_t>(place + code.size()));
    return withoutCommonIndentation(excerpt) == code;
}

bool contains(const Lines& source, const Lines& code) {
    for (std::size_t place = 0; place + code.size() <= source.size(); ++place)
        if (containsAt(source, place, code))
            return true;
    return false;
}

std::vector<fs::path> filesBelow(const fs::path& folder, const std::string& extension) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().extension() == extension)
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

const std::vector<Lines>& compiledSources() {
    static const auto sources = [] {
        std::vector<Lines> all;
        for (const auto* folder : {"examples", "tests"})
            for (const auto& file : filesBelow(root / folder, ".cpp"))
                all.push_back(linesOf(file));
        return all;
    }();
    return sources;
}

std::vector<fs::path> documents() {
    auto files = filesBelow(root / "docs", ".md");
    for (const auto* name : {"README.md", "CONTRIBUTING.md", "CHANGELOG.md", "examples/README.md"})
        files.push_back(root / name);
    return files;
}

std::string nameOf(const testing::TestParamInfo<fs::path>& document) {
    auto name = fs::relative(document.param, root).replace_extension().string();
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

class Document : public testing::TestWithParam<fs::path> {};

TEST_P(Document, ShowsOnlyCodeThatIsCompiled) {
    for (const auto& block : codeBlocksOf(GetParam())) {
        EXPECT_FALSE(block.code.empty()) << GetParam() << ":" << block.line;
        const auto& sources = compiledSources();
        EXPECT_TRUE(std::any_of(sources.begin(), sources.end(),
                                [&](const Lines& source) { return contains(source, block.code); }))
            << GetParam().string() << ":" << block.line
            << ": this code is in no source file below examples or tests";
    }
}

TEST_P(Document, LinksOnlyToFilesThatExist) {
    static const std::regex link(R"(\]\(([^)#]+)[^)]*\))");
    const auto text = contentOf(GetParam());
    for (std::sregex_iterator match(text.begin(), text.end(), link), end; match != end; ++match) {
        const auto target = (*match)[1].str();
        if (target.find("://") == std::string::npos) {
            EXPECT_TRUE(fs::exists(GetParam().parent_path() / target))
                << GetParam() << " links to " << target;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Repository, Document, testing::ValuesIn(documents()), nameOf);

TEST(Readme, ShowsTheWholeFirstProgram) {
    const auto blocks = codeBlocksOf(root / "README.md");
    ASSERT_FALSE(blocks.empty());
    EXPECT_EQ(blocks.front().code, linesOf(root / "examples/readme.cpp"));
}

} // namespace
