#include <tavo/client/transcode/header_status_tables.h>

#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::headerStatus_v1_1 {

namespace {

constexpr auto table =
    tableOf(headerStatusGet, headerStatusClear, enableGet, enableSet, iGet, iSet, oGet, ioGet, ioSet);

} // namespace

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(headerStatusGet);
TAVO_FUNCTION_NAMES(headerStatusClear);
TAVO_FUNCTION_NAMES(enableGet);
TAVO_FUNCTION_NAMES(enableSet);
TAVO_FUNCTION_NAMES(iGet);
TAVO_FUNCTION_NAMES(iSet);
TAVO_FUNCTION_NAMES(oGet);
TAVO_FUNCTION_NAMES(ioGet);
TAVO_FUNCTION_NAMES(ioSet);

} // namespace TAVO::TAVOXTranscode::headerStatus_v1_1
