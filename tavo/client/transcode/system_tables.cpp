#include <tavo/client/transcode/system_tables.h>

#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::system_v1_0 {

namespace {

constexpr auto table = tableOf(deviceReset, firmwareUpdate, firmwareStatus, timeGet, timeSet, usleep, uwait);

} // namespace

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(deviceReset);
TAVO_FUNCTION_NAMES(firmwareUpdate);
TAVO_FUNCTION_NAMES(firmwareStatus);
TAVO_FUNCTION_NAMES(timeGet);
TAVO_FUNCTION_NAMES(timeSet);
TAVO_FUNCTION_NAMES(usleep);
TAVO_FUNCTION_NAMES(uwait);

} // namespace TAVO::TAVOXTranscode::system_v1_0
