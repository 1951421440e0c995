#include <tavo/client/transcode/system_tables.h>

#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::system_v1_0 {

TAVO_METHODS(deviceReset, firmwareUpdate, firmwareStatus, timeGet, timeSet, usleep, uwait);

} // namespace TAVO::TAVOXTranscode::system_v1_0
