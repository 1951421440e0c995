#include <tavo/client/method_tables.h>

#include <tavo/client/commonmodules/cfa633_tables.h>
#include <tavo/client/commonmodules/com_tables.h>
#include <tavo/client/commonmodules/relay_tables.h>
#include <tavo/client/hwdebug/cpu_debug_tables.h>
#include <tavo/client/hwdebug/gpu_debug_tables.h>
#include <tavo/client/hwdebug/gpu_scan_tables.h>
#include <tavo/client/hwdebug/hdt_tables.h>
#include <tavo/client/hwdebug/i2c_tables.h>
#include <tavo/client/hwdebug/jtag_tables.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux_tables.h>
#include <tavo/client/hwdebug/lpc_post_code_tables.h>
#include <tavo/client/hwdebug/lpc_rom_emulation_tables.h>
#include <tavo/client/hwdebug/lpc_tables.h>
#include <tavo/client/transcode/device_tables.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/system_tables.h>
#include <tavo/client/wire/error.h>

namespace TAVO {

std::span<const ObjectTable> objectTables() noexcept {
    namespace core = TAVOXTranscode;
    namespace common = CommonModules::TAVOXTranscode;
    static const ObjectTable tables[] = {
        {"base", "1.0", core::base_v1_0::rows()},
        {"device", "1.0", core::device_v1_0::rows()},
        {"system", "1.0", core::system_v1_0::rows()},
        {"private", "1.0", {}},
        {"headerStatus", "1.1", core::headerStatus_v1_1::rows()},
        {"jtag", "1.0", core::jtag_v1_0::rows()},
        {"jtag", "1.1", core::jtag_v1_1::rows()},
        {"csJtag", "1.0", {}},
        {"hdt", "1.0", core::hdt_v1_0::rows()},
        {"hdt", "1.1", core::hdt_v1_1::rows()},
        {"cpuDebug", "1.0", {}},
        {"cpuDebug", "1.1", core::cpuDebug_v1_1::rows()},
        {"i2c", "1.0", core::i2c_v1_0::rows()},
        {"gpuScan", "1.0", core::gpuScan_v1_0::rows()},
        {"gpuDebug", "1.0", core::gpuDebug_v1_0::rows()},
        {"kelvorGpuDebugMux", "1.0", core::kelvorGpuDebugMux_v1_0::rows()},
        {"kelvorUvdMux", "1.0", {}},
        {"lpc", "1.0", core::lpc_v1_0::rows()},
        {"lpcPostCode", "1.0", core::lpcPostCode_v1_0::rows()},
        {"lpcRomEmulation", "1.0", core::lpcRomEmulation_v1_0::rows()},
        {"relay", "1.0", common::relay_v1_0::rows()},
        {"cmosRelay", "1.0", common::cmosRelay_v1_0::rows()},
        {"com", "1.0", common::com_v1_0::rows()},
        {"cfa633", "1.0", common::cfa633_v1_0::rows()},
    };
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
