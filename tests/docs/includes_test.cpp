#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

/// The sources are a house: no include points to a floor above its own, and none leads back to where it
/// began.
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

/// File to the files of this repository that it includes, both from the root.
using Includes = std::map<std::string, Names>;

Includes includesBelow(const fs::path& top) {
    static const std::regex own("#include <(tavo/[^>]+)>.*");
    Includes includes;
    for (const auto& entry : fs::recursive_directory_iterator(top / "tavo")) {
        const auto extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp")
            continue;
        auto& of = includes[fs::relative(entry.path(), top).generic_string()];
        std::ifstream in(entry.path());
        std::smatch found;
        for (std::string line; std::getline(in, line);)
            if (std::regex_match(line, found, own))
                of.push_back(found[1]);
    }
    return includes;
}

/// Prefixes of paths, the lowest floor first; those of one entry do not know each other.
using Floors = std::vector<Names>;

const Floors floors{
    {"tavo/client/export.h", "tavo/client/version_number.h"},
    {"tavo/client/wire/"},
    {"tavo/client/transcode/"},
    {"tavo/client/object/"},
    {"tavo/client/exchange/"},
    {"tavo/client/device/"},
    {"tavo/client/hwdebug/", "tavo/client/commonmodules/"},
    {"tavo/client.h"},
    {"tavo/server/", "tavo/jtag/", "tavo/json/", "tavo/config/"},
    {"tavo/c/", "tavo/trace/", "tavo/toolkit/"},
    {"tavo/simulator/"},
    {"tavo/cli/values/"},
    {"tavo/cli/commands/", "tavo/cli/"},
};

struct Place {
    std::size_t floor;
    std::string prefix;
};

/// Of the prefixes that fit the longest counts.
Place placeOf(const std::string& file, const Floors& house) {
    Place place{house.size(), ""};
    for (std::size_t floor = 0; floor < house.size(); ++floor)
        for (const auto& prefix : house[floor])
            if (file.starts_with(prefix) && prefix.size() > place.prefix.size())
                place = {floor, prefix};
    return place;
}

Names upwardIncludes(const Includes& includes, const Floors& house) {
    Names found;
    for (const auto& [file, included] : includes)
        for (const auto& target : included) {
            const auto from = placeOf(file, house);
            const auto to = placeOf(target, house);
            const bool besides = from.floor == to.floor && from.prefix != to.prefix &&
                                 !from.prefix.starts_with(to.prefix) && !to.prefix.starts_with(from.prefix);
            if (to.floor > from.floor || besides)
                found.push_back(file + " includes " + target);
        }
    return found;
}

/// One way round for each circle that a walk over all files meets.
class CircleSearch {
public:
    explicit CircleSearch(const Includes& includes)
        : includes_(includes) {
        for (const auto& [file, included] : includes)
            walk(file);
    }

    const Names& found() const { return found_; }

private:
    void walk(const std::string& file) {
        const auto begin = std::find(way_.begin(), way_.end(), file);
        if (begin != way_.end()) {
            std::string circle;
            for (auto step = begin; step != way_.end(); ++step)
                circle += *step + " > ";
            found_.push_back(circle + file);
            return;
        }
        if (!walked_.insert(file).second)
            return;
        way_.push_back(file);
        if (const auto included = includes_.find(file); included != includes_.end())
            for (const auto& target : included->second)
                walk(target);
        way_.pop_back();
    }

    const Includes& includes_;
    std::set<std::string> walked_;
    Names way_;
    Names found_;
};

TEST(Includes, PointDownwards) {
    const auto includes = includesBelow(TAVO_SOURCE_DIR);
    ASSERT_GT(includes.size(), 200u);
    EXPECT_EQ(upwardIncludes(includes, floors), Names{});
}

TEST(Includes, NameFilesThatExist) {
    for (const auto& [file, included] : includesBelow(TAVO_SOURCE_DIR))
        for (const auto& target : included)
            EXPECT_TRUE(fs::exists(fs::path(TAVO_SOURCE_DIR) / target)) << file << " includes " << target;
}

TEST(Includes, MakeNoCircle) { EXPECT_EQ(CircleSearch(includesBelow(TAVO_SOURCE_DIR)).found(), Names{}); }

TEST(Includes, EveryFileStandsOnAFloor) {
    for (const auto& [file, included] : includesBelow(TAVO_SOURCE_DIR))
        EXPECT_LT(placeOf(file, floors).floor, floors.size()) << file;
}

TEST(IncludesCheck, TellsUpwardAndSidewaysIncludes) {
    const Floors house{{"low/"}, {"left/", "right/"}, {"top/values/"}, {"top/"}};
    const Includes includes{{"low/a.h", {"right/b.h"}},
                            {"left/a.h", {"right/b.h", "low/a.h", "left/c.h"}},
                            {"top/values/v.h", {"top/t.h"}},
                            {"top/t.h", {"top/values/v.h", "low/a.h"}}};
    EXPECT_EQ(upwardIncludes(includes, house),
              (Names{"left/a.h includes right/b.h", "low/a.h includes right/b.h",
                     "top/values/v.h includes top/t.h"}));
}

TEST(IncludesCheck, FindsACircle) {
    EXPECT_EQ(CircleSearch({{"a", {"b"}}, {"b", {"c", "d"}}, {"c", {}}, {"d", {"b"}}}).found(),
              Names{"b > d > b"});
    EXPECT_EQ(CircleSearch({{"a", {"b", "c"}}, {"b", {"c"}}, {"c", {}}}).found(), Names{});
}

} // namespace
