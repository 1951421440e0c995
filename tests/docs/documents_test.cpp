#include <algorithm>
#include <cctype>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tests/docs/source_files.h>

namespace {

namespace fs = std::filesystem;
using docs::filesBelow;
using docs::Lines;
using docs::linesOf;

const fs::path root = TAVO_SOURCE_DIR;

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
    std::string language;
    Lines code;
};

struct Paper {
    Lines prose;
    std::vector<Block> blocks;
};

Paper read(const fs::path& document) {
    static const std::string fence = "```";
    Paper paper;
    bool inside = false;
    std::size_t number = 0;
    for (const auto& line : linesOf(document)) {
        ++number;
        const auto text = line.substr(std::min(line.find_first_not_of(' '), line.size()));
        if (text.rfind(fence, 0) == 0) {
            inside = !inside;
            if (inside)
                paper.blocks.push_back({number + 1, text.substr(fence.size()), {}});
        } else if (inside) {
            paper.blocks.back().code.push_back(line);
        } else {
            paper.prose.push_back(line);
        }
    }
    for (auto& block : paper.blocks)
        block.code = withoutCommonIndentation(block.code);
    return paper;
}

std::vector<Block> programsOf(const fs::path& document) {
    auto blocks = read(document).blocks;
    std::erase_if(blocks,
                  [](const Block& block) { return block.language != "cpp" && block.language != "c"; });
    return blocks;
}

// The name under which a heading can be linked to: its words in lower case, joined by hyphens.
std::string anchorOf(const std::string& heading) {
    std::string anchor;
    for (const char c : heading.substr(heading.find_first_not_of("# "))) {
        if (std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-')
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        else if (c == ' ')
            anchor += '-';
    }
    return anchor;
}

bool hasHeading(const fs::path& document, const std::string& anchor) {
    const auto prose = read(document).prose;
    return std::any_of(prose.begin(), prose.end(), [&](const std::string& line) {
        return line.rfind('#', 0) == 0 && anchorOf(line) == anchor;
    });
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

const std::vector<Lines>& compiledSources() {
    static const auto sources = [] {
        std::vector<Lines> all;
        for (const auto* folder : {"examples", "tests"})
            for (const auto* extension : {".cpp", ".c"})
                for (const auto& file : filesBelow(root / folder, extension))
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
    for (const auto& block : programsOf(GetParam())) {
        EXPECT_FALSE(block.code.empty()) << GetParam() << ":" << block.line;
        const auto& sources = compiledSources();
        EXPECT_TRUE(std::any_of(sources.begin(), sources.end(),
                                [&](const Lines& source) { return contains(source, block.code); }))
            << GetParam().string() << ":" << block.line
            << ": this code is in no source file below examples or tests";
    }
}

TEST_P(Document, LinksOnlyToFilesAndHeadingsThatExist) {
    static const std::regex link(R"(\]\(([^)#]*)#?([^)]*)\))");
    const auto& document = GetParam();
    const auto prose = read(document).prose;
    ASSERT_FALSE(prose.empty()) << document;
    for (const auto& line : prose) {
        for (std::sregex_iterator match(line.begin(), line.end(), link), end; match != end; ++match) {
            const auto file = (*match)[1].str();
            const auto anchor = (*match)[2].str();
            if (file.find("://") != std::string::npos)
                continue;
            const auto target = file.empty() ? document : document.parent_path() / file;
            EXPECT_TRUE(fs::exists(target)) << document << " links to " << target;
            EXPECT_TRUE(anchor.empty() || hasHeading(target, anchor))
                << document << " links to #" << anchor << " of " << target;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Repository, Document, testing::ValuesIn(documents()), nameOf);

TEST(Readme, ShowsTheWholeFirstProgram) {
    const auto blocks = programsOf(root / "README.md");
    ASSERT_FALSE(blocks.empty());
    EXPECT_EQ(blocks.front().code, linesOf(root / "examples/readme.cpp"));
}

} // namespace
