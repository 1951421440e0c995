#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <tavo/client/object/method_tables.h>
#include <tests/support/all_types.h>

namespace fuzz {

/// One row of one table.
struct TableRow {
    const TAVO::ObjectTable* table;
    const TAVO::TAVOXTranscode::MethodRow* row;

    std::string name() const {
        return std::string(table->type) + " " + std::string(table->version) + " " + std::string(row->name);
    }
};

/// The rows of all tables, in an order of their own.
inline const std::vector<TableRow>& allRows() {
    static const auto all = [] {
        std::vector<TableRow> rows;
        for (const auto& table : support::allTables())
            for (const auto& row : table.rows)
                rows.push_back({&table, &row});
        return rows;
    }();
    return all;
}

/// The row that a number of an input stands for.
inline const TableRow& rowNumber(std::size_t number) { return allRows()[number % allRows().size()]; }

} // namespace fuzz
