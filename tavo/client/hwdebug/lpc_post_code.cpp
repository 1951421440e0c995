#include <tavo/client/hwdebug/lpc_post_code.h>

#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0 {

namespace {

constexpr auto table =
    tableOf(postCodeGet, fifoSizeGet, fifoGet, fifoClear, fifoStatusGet, fifoStatusClear, optionPortSet,
            optionPortGet, optionPassiveSet, optionPassiveGet, optionFifoCircularSet, optionFifoCircularGet,
            optionFifoDiscardSet, optionFifoDiscardGet, optionFifoAutoResetSet, optionFifoAutoResetGet,
            enableSet, enableGet);

} // namespace

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(postCodeGet);
TAVO_FUNCTION_NAMES(fifoSizeGet);
TAVO_FUNCTION_NAMES(fifoGet);
TAVO_FUNCTION_NAMES(fifoClear);
TAVO_FUNCTION_NAMES(fifoStatusGet);
TAVO_FUNCTION_NAMES(fifoStatusClear);
TAVO_FUNCTION_NAMES(optionPortSet);
TAVO_FUNCTION_NAMES(optionPortGet);
TAVO_FUNCTION_NAMES(optionPassiveSet);
TAVO_FUNCTION_NAMES(optionPassiveGet);
TAVO_FUNCTION_NAMES(optionFifoCircularSet);
TAVO_FUNCTION_NAMES(optionFifoCircularGet);
TAVO_FUNCTION_NAMES(optionFifoDiscardSet);
TAVO_FUNCTION_NAMES(optionFifoDiscardGet);
TAVO_FUNCTION_NAMES(optionFifoAutoResetSet);
TAVO_FUNCTION_NAMES(optionFifoAutoResetGet);
TAVO_FUNCTION_NAMES(enableSet);
TAVO_FUNCTION_NAMES(enableGet);

} // namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0

namespace TAVO::HWDebug {

LpcPostCodeFactory::LpcPostCodeFactory()
    : TypeFactory("lpcPostCode", {servedBy<LpcPostCode_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace TAVO::HWDebug
