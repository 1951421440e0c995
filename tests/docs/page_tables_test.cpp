#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cxxabi.h>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/docs/page_tables.h>
#include <tests/support/all_types.h>

namespace {

using docs::Lines;
using testing::ElementsAre;
using testing::HasSubstr;

const docs::fs::path checkout = TAVO_SOURCE_DIR;

std::vector<docs::fs::path> pagesWithTables() {
    auto pages = docs::filesBelow(checkout / "docs/modules", ".md");
    pages.push_back(checkout / "docs/protocol.md");
    return pages;
}

std::string stemOf(const testing::TestParamInfo<docs::fs::path>& page) { return page.param.stem().string(); }

struct Table {
    std::string type;
    std::string version;
    docs::Cells titles;
    std::vector<docs::Cells> rows;
};

std::vector<Table> tablesOf(const Lines& page) {
    std::vector<Table> tables;
    for (auto line = page.begin(); line != page.end(); ++line) {
        const auto begun = docs::tableBegunBy(*line);
        if (!begun)
            continue;
        Table table{begun->first, begun->second, docs::cellsOf(*++line), {}};
        for (line += 2; *line != docs::tableEnds; ++line)
            table.rows.push_back(docs::cellsOf(*line));
        tables.push_back(std::move(table));
    }
    return tables;
}

std::vector<Table> allTablesOfPages() {
    std::vector<Table> all;
    for (const auto& page : pagesWithTables())
        for (auto& table : tablesOf(docs::linesOf(page)))
            all.push_back(std::move(table));
    return all;
}

class PageTables : public testing::TestWithParam<docs::fs::path> {
protected:
    void SetUp() override { support::registerAllTypes(); }
};

TEST_P(PageTables, HoldWhatTheLibraryHas) {
    const auto page = docs::linesOf(GetParam());
    EXPECT_EQ(page, docs::rewrittenPage(page)) << "scripts/docs --tables writes the tables anew";
}

INSTANTIATE_TEST_SUITE_P(Repository, PageTables, testing::ValuesIn(pagesWithTables()), stemOf);

TEST(AllPageTables, ShowEveryTypeOnce) {
    std::multiset<std::string> shown;
    for (const auto& table : allTablesOfPages())
        shown.insert(table.type + ' ' + table.version);
    std::multiset<std::string> known;
    for (const auto& table : support::allTables())
        if (!table.rows.empty())
            known.insert(std::string(table.type) + ' ' + std::string(table.version));
    EXPECT_EQ(shown, known);
}

// The class's own name, without the namespaces around it.
template <class Packet>
std::string recordNameOf(const Packet& packet) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(packet).name(), nullptr, nullptr, &status), &std::free);
    const std::string full = name.get();
    return full.substr(full.rfind(':') + 1);
}

std::vector<std::string> recordNamesOf(const TAVO::TAVOXTranscode::MethodRow& method) {
    std::vector<std::string> names;
    if (method.request)
        names.push_back(recordNameOf(*method.request->create()));
    if (method.reply)
        names.push_back(recordNameOf(*method.reply->create()));
    return names;
}

TEST(AllPageTables, NameTheRecordsWhereTheyHaveAColumnForThem) {
    int rows = 0;
    for (const auto& table : allTablesOfPages()) {
        if (!table.titles.back().starts_with("Record"))
            continue;
        const auto methods = support::rowsOf(table.type, table.version);
        ASSERT_EQ(table.rows.size(), methods.size()) << table.type;
        for (std::size_t i = 0; i < methods.size(); ++i, ++rows)
            for (const auto& name : recordNamesOf(methods[i]))
                EXPECT_THAT(table.rows[i].back(), HasSubstr(name)) << table.type << '.' << methods[i].name;
    }
    EXPECT_GT(rows, 0);
}

// The operations that prepare calls: whatever is declared with such a name and returns a call.
std::set<std::string> operationsInHeaders() {
    static const std::regex operation(R"(\b(\w+Method|getOptionDbrdyMaskSet)\()");
    std::set<std::string> operations;
    for (const auto* folder : {"tavo/client/hwdebug", "tavo/client/commonmodules"})
        for (const auto& header : docs::filesBelow(checkout / folder, ".h"))
            for (const auto& line : docs::linesOf(header)) {
                const auto code = line.substr(0, line.find("//"));
                for (std::sregex_iterator found(code.begin(), code.end(), operation), end; found != end;
                     ++found)
                    operations.insert((*found)[1]);
            }
    return operations;
}

std::set<std::string> operationsOnPages() {
    static const std::regex operation(R"(`(\w+)\(.*\)`)");
    std::set<std::string> operations;
    for (const auto& table : allTablesOfPages()) {
        const auto column = std::find(table.titles.begin(), table.titles.end(), "Operation");
        if (column == table.titles.end())
            continue;
        for (const auto& row : table.rows) {
            std::smatch found;
            const auto& cell = row.at(static_cast<std::size_t>(column - table.titles.begin()));
            EXPECT_TRUE(std::regex_match(cell, found, operation)) << table.type << ": " << row.front();
            if (!found.empty() && found[1] != "make")
                operations.insert(found[1]);
        }
    }
    return operations;
}

TEST(AllPageTables, NameEveryOperationOfTheModulesAndNoOther) {
    EXPECT_EQ(operationsOnPages(), operationsInHeaders());
}

struct RewrittenPage : testing::Test {
    RewrittenPage() { support::registerAllTypes(); }

    static std::string refusal(const Lines& page) {
        try {
            docs::rewrittenPage(page);
        } catch (const std::runtime_error& fault) {
            return fault.what();
        }
        return "none";
    }
};

TEST_F(RewrittenPage, HasTheRowsOfTheLibraryAndTheCellsWrittenByHand) {
    const Lines page = {
        "# A page",
        "<!-- methods of relay 1.0 -->",
        "| Method | Request | Reply | Meaning |",
        "|---|---|---|---|",
        "| `toggle` | nonsense | | by hand |",
        "| `gone` | | status | by hand |",
        "<!-- end of methods -->",
        "After it.",
    };
    EXPECT_THAT(
        docs::rewrittenPage(page),
        ElementsAre("# A page", "<!-- methods of relay 1.0 -->", "| Method | Request | Reply | Meaning |",
                    "|---|---|---|---|", "| `get` | | state: u8 | |", "| `set` | state: bool | status | |",
                    "| `toggle` | value: i32 | status | by hand |", "<!-- end of methods -->", "After it."));
}

TEST_F(RewrittenPage, IsRefusedWithTheLineAtFault) {
    const Lines titles = {"| Method | Request | Reply |", "|---|---|---|"};
    EXPECT_EQ(refusal({"<!-- methods of lamp 1.0 -->", titles[0], titles[1], "<!-- end of methods -->"}),
              "line 1: the library has no methods of type \"lamp\" and version \"1.0\"");
    EXPECT_EQ(refusal({"<!-- methods of relay 7 -->", titles[0], titles[1], "<!-- end of methods -->"}),
              "line 1: the library has no methods of type \"relay\" and version \"7\"");
    EXPECT_EQ(refusal({"", "<!-- methods of relay 1.0 -->", titles[0], titles[1]}),
              "line 2: this table does not end");
    EXPECT_EQ(refusal({"<!-- methods of relay 1.0 -->", "<!-- methods of com 1.0 -->", titles[0], titles[1],
                       "<!-- end of methods -->"}),
              "line 1: this table does not end");
    EXPECT_EQ(refusal({"", "<!-- end of methods -->"}), "line 2: no table has begun here");
    EXPECT_EQ(refusal({"<!-- methods of relay 1.0 -->", "<!-- end of methods -->"}),
              "line 1: a table begins with a row of at least three titles and a row of lines");
}

} // namespace
