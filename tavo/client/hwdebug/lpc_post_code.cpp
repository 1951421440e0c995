#include <tavo/client/hwdebug/lpc_post_code.h>

#include <tavo/client/transcode/internal/function_names.h>
#include <tavo/client/transcode/table.h>

namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0 {

constexpr auto table =
    tableOf(postCodeGet, fifoSizeGet, fifoGet, fifoClear, fifoStatusGet, fifoStatusClear, optionPortSet,
            optionPortGet, optionPassiveSet, optionPassiveGet, optionFifoCircularSet, optionFifoCircularGet,
            optionFifoDiscardSet, optionFifoDiscardGet, optionFifoAutoResetSet, optionFifoAutoResetGet,
            enableSet, enableGet);

MethodRows rows() noexcept { return table; }

TAVO_FUNCTION_NAMES(postCodeGet, fifoSizeGet, fifoGet, fifoClear, fifoStatusGet, fifoStatusClear,
                    optionPortSet, optionPortGet, optionPassiveSet, optionPassiveGet, optionFifoCircularSet,
                    optionFifoCircularGet, optionFifoDiscardSet, optionFifoDiscardGet, optionFifoAutoResetSet,
                    optionFifoAutoResetGet, enableSet, enableGet);

} // namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0

namespace TAVO::HWDebug {

LpcPostCodeFactory::LpcPostCodeFactory()
    : TypeFactory("lpcPostCode", {servedBy<LpcPostCode_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace TAVO::HWDebug
