#include <tavo/client/object/method_tables.h>

#include <tavo/client/object/internal/type_registry.h>
#include <tavo/client/transcode/immortal.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

std::span<const ObjectTable> objectTables() noexcept { return immortal<TypeRegistry>().tables(); }

const ObjectTable* findObjectTable(std::string_view type, const Version& version) {
    return immortal<TypeRegistry>().find(type, version);
}

TAVOXTranscode::MethodRows methodRows(std::string_view type, std::string_view version) noexcept {
    TAVOXTranscode::MethodRows rows;
    for (const auto& table : objectTables())
        if (table.type == type && table.version == version)
            rows = table.rows;
    return rows;
}

const TAVOXTranscode::MethodRow* findMethodRow(const Object_v1_0& object, std::string_view name) {
    const auto functions = object.findFunctions(name);
    for (const auto& table : objectTables())
        for (const auto& row : table.rows)
            if (row.name == name && row.encoder == functions.encoder && row.decoder == functions.decoder)
                return &row;
    return nullptr;
}

const TAVOXTranscode::MethodRow& describeMethod(const Object_v1_0& object, const std::string& name) {
    static_cast<void>(object.getEncoder(name));
    static_cast<void>(object.getDecoder(name));
    if (const auto* row = findMethodRow(object, name))
        return *row;
    throw withFacts(SpecificationError("No description for Method: " + name),
                    {.method = object.getFullName() + "." + name});
}

} // namespace TAVO
