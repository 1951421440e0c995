#include <tavo/client/commonmodules/cfa633.h>

#include <tavo/client/transcode/internal/function_names.h>

namespace CommonModules::TAVOXTranscode::cfa633_v1_0 {

TAVO_METHODS(lcdPrint, lcdClear, lcdBackLight);

} // namespace CommonModules::TAVOXTranscode::cfa633_v1_0

namespace CommonModules {

namespace cfa633_v1_0 = TAVOXTranscode::cfa633_v1_0;

std::shared_ptr<TAVO::Method> Cfa633_v1_0::getLcdPrintMethod(int first, int second, std::string text) const {
    return make(cfa633_v1_0::lcdPrint, first, second, std::move(text));
}

std::shared_ptr<TAVO::Method> Cfa633_v1_0::getLcdClearMethod() const { return make(cfa633_v1_0::lcdClear); }

std::shared_ptr<TAVO::Method> Cfa633_v1_0::getLcdBackLightMethod(int level) const {
    return make(cfa633_v1_0::lcdBackLight, level);
}

Cfa633Factory::Cfa633Factory()
    : TypeFactory("cfa633", {servedBy<Cfa633_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace CommonModules
