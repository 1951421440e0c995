#include <tavo/client/transcode/header_status_tables.h>

#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::headerStatus_v1_1 {

constexpr auto table =
    tableOf(headerStatusGet, headerStatusClear, enableGet, enableSet, iGet, iSet, oGet, ioGet, ioSet);

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(headerStatusGet, headerStatusClear, enableGet, enableSet, iGet, iSet, oGet, ioGet, ioSet);

} // namespace TAVO::TAVOXTranscode::headerStatus_v1_1
