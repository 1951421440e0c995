#include <tavo/client/transcode/header_status_tables.h>

#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::headerStatus_v1_1 {

TAVO_METHODS(headerStatusGet, headerStatusClear, enableGet, enableSet, iGet, iSet, oGet, ioGet, ioSet);

} // namespace TAVO::TAVOXTranscode::headerStatus_v1_1
