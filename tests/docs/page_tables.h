#pragma once

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tavo/client/object/method_tables.h>
#include <tests/docs/source_files.h>

/// The tables of methods in the documents. Each stands between two marks, `<!-- methods of TYPE VERSION -->`
/// and
/// `<!-- end of methods -->`. Its rows and their first three cells (method, request, reply) come from the
/// library; the titles and all further cells are written by hand and belong to the method of their row.
namespace docs {

using Cells = std::vector<std::string>;

inline constexpr std::string_view tableBegins = "<!-- methods of ";
inline constexpr std::string_view tableEnds = "<!-- end of methods -->";
inline constexpr std::size_t cellsOfLibrary = 3;

/// Type and version of a line that begins a table; nothing for any other line.
inline std::optional<std::pair<std::string, std::string>> tableBegunBy(const std::string& line) {
    static constexpr std::string_view end = " -->";
    if (!line.starts_with(tableBegins) || !line.ends_with(end))
        return std::nullopt;
    const auto name = line.substr(tableBegins.size(), line.size() - tableBegins.size() - end.size());
    const auto space = name.find(' ');
    return std::pair(name.substr(0, space), space == std::string::npos ? "" : name.substr(space + 1));
}

inline std::string trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

inline Cells cellsOf(const std::string& row) {
    Cells cells;
    for (auto begin = row.find('|'), end = row.find('|', begin + 1); end != std::string::npos;
         begin = end, end = row.find('|', begin + 1))
        cells.push_back(trimmed(row.substr(begin + 1, end - begin - 1)));
    return cells;
}

inline std::string rowOf(const Cells& cells) {
    std::string row = "|";
    for (const auto& cell : cells)
        row += (cell.empty() ? "" : " " + cell) + " |";
    return row;
}

inline std::string formOf(const std::vector<TAVO::FieldDescription>& fields) {
    std::string form;
    for (const auto& field : fields)
        form += (form.empty() ? "" : ", ") + field.name + ": " + field.type;
    return form;
}

inline Cells cellsOf(const TAVO::TAVOXTranscode::MethodRow& method) {
    return {'`' + std::string(method.name) + '`', method.request ? formOf(method.request->fields()) : "",
            method.reply ? formOf(method.reply->fields()) : "status"};
}

/// The table with the rows that it must have: the library's, and behind each the cells that it had.
inline Lines rewrittenTable(const Lines& table, TAVO::TAVOXTranscode::MethodRows methods) {
    if (table.size() < 2 || cellsOf(table.front()).size() < cellsOfLibrary)
        throw std::runtime_error("a table begins with a row of at least three titles and a row of lines");
    const auto width = cellsOf(table.front()).size();
    Lines rewritten(table.begin(), table.begin() + 2);
    for (const auto& method : methods) {
        auto cells = cellsOf(method);
        const auto old = std::find_if(table.begin() + 2, table.end(), [&](const std::string& row) {
            const auto had = cellsOf(row);
            return !had.empty() && had.front() == cells.front();
        });
        if (old != table.end()) {
            const auto had = cellsOf(*old);
            for (auto kept = cellsOfLibrary; kept < had.size(); ++kept)
                cells.push_back(had[kept]);
        }
        cells.resize(std::max(width, cells.size()));
        rewritten.push_back(rowOf(cells));
    }
    return rewritten;
}

/// The page with the tables that it must have. All types must be registered.
/// @throws std::runtime_error with the number of the line for a mark without its partner, a type that the
/// library
///         does not have, and a table without titles.
inline Lines rewrittenPage(const Lines& page) {
    Lines rewritten;
    for (std::size_t i = 0; i < page.size(); ++i) {
        rewritten.push_back(page[i]);
        const auto refuse = [line = std::to_string(i + 1)](const std::string& why) {
            throw std::runtime_error("line " + line + ": " + why);
        };
        if (page[i] == tableEnds)
            refuse("no table has begun here");
        const auto begun = tableBegunBy(page[i]);
        if (!begun)
            continue;
        const auto& [type, version] = *begun;
        const auto methods = TAVO::methodRows(type, version);
        if (methods.empty())
            refuse("the library has no methods of type \"" + type + "\" and version \"" + version + "\"");
        const auto begin = page.begin() + static_cast<std::ptrdiff_t>(i + 1);
        const auto end = std::find_if(begin, page.end(), [](const std::string& line) {
            return line == tableEnds || tableBegunBy(line);
        });
        if (end == page.end() || *end != tableEnds)
            refuse("this table does not end");
        try {
            const auto table = rewrittenTable(Lines(begin, end), methods);
            rewritten.insert(rewritten.end(), table.begin(), table.end());
        } catch (const std::runtime_error& fault) {
            refuse(fault.what());
        }
        rewritten.emplace_back(tableEnds);
        i = static_cast<std::size_t>(end - page.begin());
    }
    return rewritten;
}

} // namespace docs
