#pragma once

#include <span>

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/hwdebug/hwd_objects.h>
#include <tavo/client/object/method_tables.h>

namespace support {

inline void registerAllTypes() {
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::HWDebug::HwdObjects::registerCoreObjects();
    CommonModules::CommonModulesObjects::registerCoreObjects();
}

/// The methods of all types of the library.
inline std::span<const TAVO::ObjectTable> allTables() {
    registerAllTypes();
    return TAVO::objectTables();
}

/// The rows of that type and version of the library.
inline TAVO::TAVOXTranscode::MethodRows rowsOf(std::string_view type, std::string_view version) {
    registerAllTypes();
    return TAVO::methodRows(type, version);
}

} // namespace support
