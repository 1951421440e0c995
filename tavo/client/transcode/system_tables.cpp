#include <tavo/client/transcode/system_tables.h>

#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::system_v1_0 {

constexpr auto table = tableOf(deviceReset, firmwareUpdate, firmwareStatus, timeGet, timeSet, usleep, uwait);

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(deviceReset, firmwareUpdate, firmwareStatus, timeGet, timeSet, usleep, uwait);

} // namespace TAVO::TAVOXTranscode::system_v1_0
