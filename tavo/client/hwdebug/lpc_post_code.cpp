#include <tavo/client/hwdebug/lpc_post_code.h>

#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0 {

TAVO_METHODS(postCodeGet, fifoSizeGet, fifoGet, fifoClear, fifoStatusGet, fifoStatusClear, optionPortSet,
             optionPortGet, optionPassiveSet, optionPassiveGet, optionFifoCircularSet, optionFifoCircularGet,
             optionFifoDiscardSet, optionFifoDiscardGet, optionFifoAutoResetSet, optionFifoAutoResetGet,
             enableSet, enableGet);

} // namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0

namespace TAVO::HWDebug {

LpcPostCodeFactory::LpcPostCodeFactory()
    : TypeFactory("lpcPostCode", {servedBy<LpcPostCode_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace TAVO::HWDebug
