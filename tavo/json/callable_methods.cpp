#include <tavo/json/callable_methods.h>

#include <set>
#include <string>
#include <string_view>

namespace TAVO::json {

namespace {

using TAVOXTranscode::MethodRow;

/// Whether this row describes a method of the object.
bool describes(const MethodRow& row, const Object_v1_0& object) {
    const auto [encoder, decoder] = object.findFunctions(row.name);
    return row.encoder == encoder && row.decoder == decoder && object.hasMethod(std::string(row.name));
}

} // namespace

std::vector<const MethodRow*> callableMethods(const Object_v1_0& object) {
    std::vector<const MethodRow*> rows;
    // Types that share a method have a row each.
    std::set<std::string_view> seen;
    for (const auto& table : objectTables())
        for (const auto& row : table.rows)
            if (describes(row, object) && seen.insert(row.name).second)
                rows.push_back(&row);
    return rows;
}

} // namespace TAVO::json
