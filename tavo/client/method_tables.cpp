#include <tavo/client/method_tables.h>

#include <vector>

#include <tavo/client/commonmodules/relay_tables.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/system_tables.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

namespace {

std::vector<ObjectTable> collectTables() {
    namespace core = TAVOXTranscode;
    namespace common = CommonModules::TAVOXTranscode;
    return {
        {"base", "1.0", core::base_v1_0::rows()},
        {"device", "1.0", core::device_v1_0::rows()},
        {"system", "1.0", core::system_v1_0::rows()},
        {"headerStatus", "1.1", core::headerStatus_v1_1::rows()},
        {"relay", "1.0", common::relay_v1_0::rows()},
        {"cmosRelay", "1.0", common::cmosRelay_v1_0::rows()},
    };
}

} // namespace

std::span<const ObjectTable> objectTables() noexcept {
    static const auto tables = collectTables();
    return tables;
}

TAVOXTranscode::MethodRows methodRows(std::string_view type, std::string_view version) noexcept {
    for (const auto& table : objectTables())
        if (table.type == type && table.version == version)
            return table.rows;
    return {};
}

const TAVOXTranscode::MethodRow& describeMethod(const Object_v1_0& object, const std::string& name) {
    const auto encoder = object.getEncoder(name);
    const auto decoder = object.getDecoder(name);
    for (const auto& table : objectTables())
        for (const auto& row : table.rows)
            if (row.name == name && row.encoder == encoder && row.decoder == decoder)
                return row;
    throw SpecificationError("No description for Method: " + name);
}

} // namespace TAVO
